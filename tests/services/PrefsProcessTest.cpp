// Preferences that several processes write, and that a process is killed over.

#include "framework/services/GPrefFileModule.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"
#include "tests/ipc/StartPeer.h"

namespace {

std::unique_ptr<ChildProcess> StartWriter(const TestFolder& folder, const char* group, long count) {
    return StartPeer("preferences " + TextOf(folder.Portable("Q.uprefs")) + " " + group + " " +
                     std::to_string(count));
}

/// The number that the peer of that group has written last; -1 for what no peer writes.
long NumberOf(const TestFolder& folder, const char* group) {
    const GPrefSharedFileModule module(folder.Portable("Q.uprefs"), GUnicodeEncoding::GetInstance());
    const GString& first = module.Get(group, "first");
    if (first.IsEmpty()) return 0;
    const GString expected = GString(first.GetInt32()) + GString(std::string(5000, '.').c_str());
    return first == expected && module.Get(group, "second") == first ? first.GetInt32() : -1;
}

using PrefsProcessTest = FolderTest;

TEST_F(PrefsProcessTest, WritersLoseNothingOfEachOther) {
    constexpr long cCount = QUILLON_TEST_WRITES;
    const auto one = StartWriter(mFolder, "a", cCount), other = StartWriter(mFolder, "b", cCount);
    while (one->IsRunning() || other->IsRunning()) {
        EXPECT_GE(NumberOf(mFolder, "a"), 0);
        EXPECT_GE(NumberOf(mFolder, "b"), 0);
        PSystem::MilliSleep(20);  // a reader that never rests would keep the writers out
    }
    EXPECT_EQ(one->WaitForExitCode(), 0);
    EXPECT_EQ(other->WaitForExitCode(), 0);
    EXPECT_EQ(NumberOf(mFolder, "a"), cCount);
    EXPECT_EQ(NumberOf(mFolder, "b"), cCount);
}

TEST_F(PrefsProcessTest, AWriterKilledAtAnyMomentLeavesAWholeFileAndNoLock) {
    std::mt19937 random(3);
    for (int round = 0; round < QUILLON_TEST_KILLS; ++round) {
        const auto writer = StartWriter(mFolder, "a", 100000);
        while (writer->IsRunning() && !mFolder.Has("Q.uprefs")) PSystem::MilliSleep(1);
        PSystem::MilliSleep(static_cast<long>(random() % 30));
        ASSERT_TRUE(writer->IsRunning());
        writer->Kill();
        EXPECT_GT(NumberOf(mFolder, "a"), 0);
        std::filesystem::remove(mFolder.Standard("Q.uprefs"));
    }
    EXPECT_FALSE(mFolder.Has("Q (damaged).uprefs"));
}

}  // namespace
