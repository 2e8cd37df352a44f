#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "tests/ipc/RawSegment.h"
#include "tests/platform/PeerProgram.h"
#include "tests/tools/ChildProcess.h"
#include "tools/console/Console.h"
#include "tools/quillonctl/Listeners.h"

namespace {

/// The program under test, and this process in the part of the monitor.
class PrinterProcessorTest : public testing::Test {
protected:
    PrinterProcessorTest() { GPPIPCManager::AddReference(); }
    ~PrinterProcessorTest() override { GPPIPCManager::ReleaseReference(); }

    /// Half a minute at the longest, until it listens or has ended.
    ChildProcess Start(const std::wstring& options) {
        ChildProcess program(L"PrinterProcessorWin.exe" + options, mFolder.Standard("out"),
                             mFolder.Standard("err"));
        WaitFor([&] { return IsListening(program) || !program.IsRunning(); });
        return program;
    }
    /// False when half a minute passes before it is so.
    template <class Condition>
    static bool WaitFor(const Condition& condition) {
        for (int i = 0; i < 3000 && !condition(); ++i) ::Sleep(10);
        return condition();
    }
    /// Waits until the text stands so often in its standard output or, with "err", in its error output.
    bool WaitToRead(const std::string& text, int count = 1, const char* output = "out") const {
        return WaitFor([&] {
            const std::string all = mFolder.Take(output);
            std::size_t at = all.find(text);
            for (int i = 1; i < count && at != all.npos; ++i) at = all.find(text, at + 1);
            return at != all.npos;
        });
    }
    long CountFiles(const wchar_t* start) const {
        return std::ranges::count_if(
            std::filesystem::directory_iterator(mFolder.Standard("")),
            [&](const auto& file) { return file.path().filename().wstring().starts_with(start); });
    }
    static bool IsListening(const ChildProcess& program) {
        return GPPIPCManager::GetInstance()->GetListeningState(static_cast<long>(program.GetID())) ==
               GIPCManager::cListening;
    }
    static void Send(const ChildProcess& program, const GBuffer& data) {
        GPPIPCManager::GetInstance()->SendOnceRaw(static_cast<long>(program.GetID()),
                                                  GPPJobRecord::cMessageType, data);
    }
    void SendJob(const ChildProcess& program, const char* user) {
        mFolder.Put("job.ps", "%!PS");
        Send(program, GPPJobRecord(GString(user), mFolder.Portable("job.ps"), GString("Proof"),
                                   GString("QuillonPDFPort:"), 1)
                          .GetMessageData());
    }

    TestFolder mFolder;
};

TEST_F(PrinterProcessorTest, WithOnceItReportsWhatIsNoRecordAndEndsAfterTheFirstJob) {
    const ChildProcess program = Start(L" --json --once");
    for (const char* text : {"no dictionary at all", "#BEGINDICT\r\n\"UserName\"\r\n#ENDDICT\r\n", ""})
        Send(program, GBuffer(text));
    SendJob(program, "anna");
    EXPECT_EQ(program.WaitForExitCode(), 0);
    const std::string output = mFolder.Take("out");
    EXPECT_THAT(output, testing::MatchesRegex(
                            "\\{\"JobPath\":\".*job.ps\",\"JobFile\":\".*job .taken .*.ps\",\"JobBytes\":4,"
                            "\"Complete\":false,\"Title\":null,\"Pages\":null,\"UserName\":\"anna\","
                            "\"PrinterName\":\"Proof\","
                            "\"PortName\":\"QuillonPDFPort:\",\"CopyCount\":1\\}\n"));
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
    const std::string errors = mFolder.Take("err");
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 3) << errors;
    EXPECT_THAT(errors, testing::HasSubstr("holds no job record"));
    EXPECT_FALSE(IsListening(program));
}

TEST_F(PrinterProcessorTest, WithPendingItHandsOutWhatLiesThereAndThenListens) {
    // Below the folder that is the spooler's temporary one for a program started from here.
    std::filesystem::create_directories(mFolder.Standard("anna/Proof"));
    mFolder.Put("anna/Proof/old.ps", "%!PS\n%%EOF\n");
    const std::filesystem::path temporary = std::filesystem::temp_directory_path();
    ::SetEnvironmentVariableW(L"TMP", mFolder.Standard("").c_str());
    const ChildProcess program = Start(L" --pending");
    ::SetEnvironmentVariableW(L"TMP", temporary.c_str());
    EXPECT_THAT(mFolder.Take("out"), testing::HasSubstr("old (taken "));
    SendJob(program, "berta");
    EXPECT_TRUE(WaitToRead("berta"));
    EXPECT_THAT(mFolder.Take("out"),
                testing::HasSubstr("User: anna\nPrinter: Proof\nPort: QuillonPDFPort:\n"));
    EXPECT_FALSE(mFolder.Has("anna/Proof/old.ps"));
}

TEST_F(PrinterProcessorTest, ItRunsSoManyProgramsAtATimeAndKeepsTheFilesOfThoseThatFail) {
    const ChildProcess program =
        Start(L" --json --jobs 2 --run \"\\\"" + AsStandard(PeerPath("ProcessPeer").GetNativePathString()) +
              L"\\\" wait \\\"" + mFolder.Standard("").wstring() + L"%UserName%\\\"\"");
    for (const char* user : {"anna", "berta", "carla"}) {
        SendJob(program, user);
        while (mFolder.Has("job.ps")) ::Sleep(10);
    }
    // The third is told of only when its turn comes.
    ASSERT_TRUE(WaitToRead("\"UserName\"", 2));
    while (CountFiles(L"job (waiting ") == 0) ::Sleep(10);
    EXPECT_EQ(mFolder.Take("out").find("carla"), std::string::npos);
    for (const char* user : {"anna", "berta"}) mFolder.Put(user, "3221225477");
    ASSERT_TRUE(WaitToRead("\"Outcome\":\"crashed\",\"ExitCode\":3221225477,", 2));
    ASSERT_TRUE(WaitToRead("\"UserName\":\"carla\""));
    mFolder.Put("carla", "7");
    ASSERT_TRUE(WaitToRead("\"Outcome\":\"failed\",\"ExitCode\":7,"));
    EXPECT_EQ(CountFiles(L"job (taken "), 3);
    EXPECT_TRUE(program.IsRunning());
}

TEST_F(PrinterProcessorTest, ASpoiltQueueAndALostRegistrationAreReportedAndTheNextJobStillArrives) {
    const ChildProcess program = Start(L" --once");
    const auto programID = static_cast<long>(program.GetID());
    int entries = 0;
    for (const long session : {GSessionInfo::GetInstance()->GetCurrentSessionID(), -1L}) {
        GIPCMessageQueueMgr registry(GPPIPCManager::GetRegistryID(GIPCMessageQueueMgr::cNormal), session,
                                     GIPCMessageQueueMgr::Scope::cOwnOnly);
        GTable<std::int32_t> queues;
        registry.GetRegisteredHere(programID, queues);
        if (queues.IsEmpty()) continue;  // where both names are one registry
        ++entries;
        const GBuffer name =
            GBuffer("QulShD") + GIPCMessageQueue::ConvertToMemoryID(programID, queues[0]).GetBuffer();
        RawSegment::Open(GIPCMessageQueue::GetMemoryPath(session).GetPtr(), name.GetPtr())->SetWord(8, 99999);
        // As the monitor does when it meets a spoilt queue.
        registry.Unregister(programID);
    }
    EXPECT_GT(entries, 0);
    EXPECT_TRUE(WaitToRead("Registering again", 1, "err"));
    ASSERT_TRUE(WaitFor([&] { return IsListening(program); }));
    SendJob(program, "berta");
    EXPECT_EQ(program.WaitForExitCode(), 0) << mFolder.Take("err");
    EXPECT_THAT(mFolder.Take("out"), testing::HasSubstr("\nUser: berta\n"));
}

TEST_F(PrinterProcessorTest, AnUnknownOptionEndsItAtOnce) {
    const ChildProcess program = Start(L" --nope");
    EXPECT_EQ(program.WaitForExitCode(), 2);
    EXPECT_THAT(mFolder.Take("err"), testing::HasSubstr("'--nope' is not an option"));
    EXPECT_EQ(mFolder.Take("out"), "");
}

TEST_F(PrinterProcessorTest, TheListOfListenersNamesItOnceAndTellsWhenItHasEnded) {
    const ChildProcess program = Start(L"");
    for (const bool isListening : {true, false}) {
        std::vector<Listener> found = Listeners::GetAll();
        std::erase_if(found,
                      [&](const Listener& l) { return l.processID != static_cast<long>(program.GetID()); });
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].isListening, isListening);
        program.Kill();
    }
}

}  // namespace
