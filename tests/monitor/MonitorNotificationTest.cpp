// Jobs through the DLL's table, and what processing applications in other processes hear of them.

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <thread>

#include "framework/core/GException.h"
#include "framework/ipc/GShMemID.h"
#include "framework/system/GSessionInfo.h"
#include "tests/ipc/ManagerTestSupport.h"
#include "tests/ipc/RawSegment.h"
#include "tests/monitor/ListenerProcess.h"
#include "tests/monitor/MonitorLibrary.h"
#include "tests/monitor/TraceCapture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const cSucceeded = "Notification to PrintProcessor succeeded!";
const char* const cFailed = "Notification to PrintProcessor failed!";

class MonitorNotification : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(mLibrary.Open()); }

    MonitorLibrary mLibrary;
};

/// The registry of listeners in a session, or of all, and a word of it that is spoilt while this lives.
class SpoiltRegistry {
public:
    SpoiltRegistry(long session, long wordOffset, std::uint32_t value) : mOffset(wordOffset) {
        GBuffer path;
        GSessionInfo::GetInstance()->GetSessionPath(path, session);
        mSegment = RawSegment::Open(path.GetPtr(), "QulShDGIPC_PP");
        mOld = mSegment->GetWord(mOffset);
        mSegment->SetWord(mOffset, value);
    }
    ~SpoiltRegistry() { mSegment->SetWord(mOffset, mOld); }

private:
    std::unique_ptr<RawSegment> mSegment;
    long mOffset;
    std::uint32_t mOld;
};

/// Another thread that keeps the registries' mutex for as long as this lives.
struct KeptMutex : MutexHog {
    KeptMutex() : MutexHog(GShMemID("GIPC_PP")) {}
};

TEST_F(MonitorNotification, TellsEveryListenerOfEveryJobOnce) {
    ListenerProcess first(L"listen");
    ListenerProcess second(L"listen");
    TraceCapture trace;
    for (const wchar_t* title : {L"a.txt", L"b.txt", L"b.txt", L"\x00FC.txt"}) {
        EXPECT_TRUE(mLibrary.Print(title, "x"));
        EXPECT_THAT(trace.Take(), Contains(cSucceeded));
    }
    EXPECT_EQ(first.Finish(), 0u);
    EXPECT_EQ(second.Finish(), 0u);
    EXPECT_THAT(first.GetJobs(), ElementsAre(L"a.ps", L"b.ps", L"b.ps", testing::_));
    EXPECT_EQ(first.GetJobs(), second.GetJobs());
}

TEST_F(MonitorNotification, GivesAStalledListenerItsTimeAndLeavesTheMessageThere) {
    ListenerProcess listener(L"stall");
    TraceCapture trace;
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_TRUE(mLibrary.Print(L"slow.txt", "x"));
    const ULONGLONG elapsed = ::GetTickCount64() - start;
    EXPECT_THAT(trace.Take(), Contains(cSucceeded));
    EXPECT_GE(elapsed, 3000u);
    EXPECT_LT(elapsed, 15000u);
    EXPECT_THAT(listener.GetJobs(), IsEmpty());
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_THAT(listener.GetJobs(), ElementsAre(L"slow.ps"));
}

TEST_F(MonitorNotification, DeliversToAFullQueueWithTheNextJob) {
    ListenerProcess listener(L"full");
    TraceCapture trace;
    EXPECT_TRUE(mLibrary.Print(L"first.txt", "x"));
    EXPECT_THAT(trace.Take(), Contains(cSucceeded)) << "kept for later counts as sent";
    EXPECT_TRUE(mLibrary.Print(L"second.txt", "x"));
    EXPECT_THAT(listener.GetJobs(), IsEmpty());
    listener.Drain();
    EXPECT_TRUE(mLibrary.Print(L"third.txt", "x"));
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_THAT(listener.GetJobs(), ElementsAre(L"first.ps", L"second.ps", L"third.ps"));
}

TEST_F(MonitorNotification, IsNotDisturbedByAListenerThatDied) {
    ListenerProcess dead(L"die");
    EXPECT_EQ(dead.Finish(), 9u);
    TraceCapture trace;
    EXPECT_TRUE(mLibrary.Print(L"dead.txt", "x"));
    EXPECT_THAT(trace.Take(), Contains(cFailed));
    ListenerProcess alive(L"listen");
    EXPECT_TRUE(mLibrary.Print(L"alive.txt", "x"));
    EXPECT_THAT(trace.Take(), Contains(cSucceeded));
    EXPECT_EQ(alive.Finish(), 0u);
    EXPECT_THAT(alive.GetJobs(), ElementsAre(L"alive.ps"));
}

TEST_F(MonitorNotification, IsNotDisturbedByASpoiltRegistry) {
    ListenerProcess listener(L"listen");
    const long session = GSessionInfo::GetInstance()->GetCurrentSessionID();
    constexpr long cEndOffsetWord = 12;  // behind the size word, the version and the seed
    TraceCapture trace;
    {
        const SpoiltRegistry own(session, cEndOffsetWord, 0x7FFFFFFF);
        const SpoiltRegistry global(-1, cEndOffsetWord, 0xFFFFFFFF);
        EXPECT_TRUE(mLibrary.Print(L"spoilt.txt", "all of it"));
    }
    EXPECT_THAT(trace.Take(), Contains(cFailed));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"spoilt.ps")), "all of it");
    EXPECT_TRUE(mLibrary.Print(L"sound.txt", "x"));
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_THAT(listener.GetJobs(), ElementsAre(L"sound.ps"));
}

TEST_F(MonitorNotification, PassesOnThatARecordIsTooLargeForAnyQueueAndPrintsOn) {
    ListenerProcess listener(L"listen");
    ASSERT_TRUE(mLibrary.Print(L"first.txt", "all of it"));
    // A start without a file of its own takes any printer name, and the name of the job before.
    std::wstring printer(40000, L'p');
    ASSERT_TRUE(mLibrary.GetTable().pfnStartDocPort(mLibrary.mPort, printer.data(), 8, 2, nullptr));
    EXPECT_THROW(mLibrary.End(), GException);
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"first.ps")), "all of it");
    std::thread([this] { EXPECT_TRUE(mLibrary.Print(L"next.txt", "x")) << "on another thread"; }).join();
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_THAT(listener.GetJobs(), ElementsAre(L"first.ps", L"next.ps"));
}

TEST_F(MonitorNotification, WaitsOnlySoLongForAMutexThatSomebodyKeeps) {
    ListenerProcess listener(L"listen");
    TraceCapture trace;
    {
        const KeptMutex kept;
        const ULONGLONG start = ::GetTickCount64();
        EXPECT_TRUE(mLibrary.Print(L"kept.txt", "x"));
        EXPECT_LT(::GetTickCount64() - start, 15000u);
    }
    EXPECT_THAT(trace.Take(),
                testing::IsSupersetOf(
                    {std::string(cFailed), std::string("PrinterProcessorWin could not be reached")}));
    EXPECT_TRUE(mLibrary.Print(L"free.txt", "x"));
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_THAT(listener.GetJobs(), ElementsAre(L"free.ps"));
}

TEST(MonitorWithoutHandOff, PrintsAndStartsItWithALaterJob) {
    TraceCapture trace;
    auto kept = std::make_unique<KeptMutex>();
    MonitorLibrary library;
    EXPECT_THAT(trace.Take(), ElementsAre("DLLMain", "DLL_PROCESS_ATTACH", testing::_,
                                          "GPPPrinterProcessorLayer::Initialize",
                                          "Failed in DLL_PROCESS_ATTACH", "InitializePrintMonitor2"));
    ASSERT_TRUE(library.Open());
    EXPECT_TRUE(library.Print(L"without.txt", "x"));
    EXPECT_THAT(trace.Take(), Contains(cFailed));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"without.ps")), "x");
    kept.reset();
    ListenerProcess listener(L"listen");
    EXPECT_TRUE(library.Print(L"with.txt", "x"));
    EXPECT_THAT(trace.Take(), Contains(cSucceeded));
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_THAT(listener.GetJobs(), ElementsAre(L"with.ps"));
}

}  // namespace
