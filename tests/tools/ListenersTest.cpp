#include "tools/quillonctl/Listeners.h"

#include "tests/WindowsTesting.h"
#include "tests/ipc/RawSegment.h"
#include "tools/console/Console.h"
#include "tools/quillonctl/MessagingCheck.h"

#include <sddl.h>

namespace {

using KernelHandle = PWin32ScopedHandle<PWin32KernelHandle>;

const char cLock[] = "Global\\QulShLGIPCTest_PP";
const char cSegment[] = "QulShDGIPCTest_PP";

std::string FindObstacle() {
    return ToUTF8(MessagingCheck::FindObstacle(GIPCMessageQueueMgr::cTest));
}

TEST(MessagingCheck, NamesALockThatIsHeldOrKeptFromOthersOrNoLockAtAll) {
    EXPECT_EQ(FindObstacle(), "") << "nothing is there yet";
    {
        const KernelHandle lock(::CreateMutexA(nullptr, TRUE, cLock));
        std::string found;
        std::thread([&] { found = FindObstacle(); }).join();
        EXPECT_THAT(found, testing::StartsWith(std::string(cLock) + " has been held by another program"));
        ::ReleaseMutex(lock.Get());
        EXPECT_EQ(FindObstacle(), "") << "and it was given back";
    }
    {
        const KernelHandle event(::CreateEventA(nullptr, TRUE, FALSE, cLock));
        EXPECT_THAT(FindObstacle(), testing::HasSubstr("another kind"));
    }
    SECURITY_ATTRIBUTES nobody{sizeof nobody, nullptr, FALSE};
    ASSERT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorA(
        "D:(A;;RC;;;WD)", SDDL_REVISION_1, &nobody.lpSecurityDescriptor, nullptr));
    const PWin32ScopedHandle<PWin32LocalBlock> descriptor(nobody.lpSecurityDescriptor);
    const KernelHandle lock(::CreateMutexA(&nobody, FALSE, cLock));
    EXPECT_THAT(FindObstacle(), testing::MatchesRegex(".* belongs to .+, who shuts others out."));
}

TEST(MessagingCheck, NamesASegmentOfAnotherSize) {
    const auto segment = RawSegment::Make("Global\\", cSegment, 8208);
    segment->SetWord(0, 8208);
    EXPECT_EQ(FindObstacle(), "");
    segment->SetWord(0, 8204);
    EXPECT_THAT(FindObstacle(), testing::StartsWith("Global\\QulShDGIPCTest_PP has room for 8200 bytes"));
    segment->SetWord(0, 100000);
    EXPECT_THAT(FindObstacle(), testing::HasSubstr("cannot be used"));
}

TEST(Listeners, AProcessIsListedOnceUnderItsOwnSession) {
    // Each registration is a session, a process and a number, each listener a session and a process.
    using Found = std::vector<std::pair<long, long>>;
    const std::tuple<const char*, GTable<GIPCQueueAddress>, Found> rows[] = {
        {"nobody", {}, {}},
        {"its session's registry alone", {{2, 10, 5}}, {{2, 10}}},
        {"the shared one first", {{-1, 10, 5}, {2, 10, 6}}, {{2, 10}}},
        {"the shared one last", {{2, 10, 6}, {-1, 10, 5}}, {{2, 10}}},
        {"the shared one as that of session 0", {{0, 10, 5}, {1, 10, 6}}, {{1, 10}}},
        {"session 0 itself", {{-1, 10, 5}, {0, 10, 5}}, {{0, 10}}},
        {"the shared one alone", {{-1, 10, 5}}, {{-1, 10}}},
        {"twice in one registry", {{1, 10, 5}, {1, 10, 6}}, {{1, 10}}},
        {"three", {{0, 30, 1}, {0, 10, 2}, {0, 20, 3}, {1, 10, 4}, {2, 20, 5}}, {{0, 30}, {1, 10}, {2, 20}}}};
    for (const auto& [what, registrations, expected] : rows) {
        Found found;
        for (const Listener& listener : Listeners::Merge(registrations))
            found.emplace_back(listener.session, listener.processID);
        EXPECT_EQ(found, expected) << what;
    }
}

}  // namespace
