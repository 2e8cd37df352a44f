#include <gmock/gmock.h>

#include <algorithm>

#include "framework/core/GPathName.h"
#include "monitor/GPPIPCManager.h"
#include "monitor/GPPJobRecord.h"
#include "platform/win32/PWin32Api.h"
#include "platform/win32/PWin32Wide.h"
#include "tests/tools/ChildProcess.h"
#include "tests/tools/TemporaryFolder.h"
#include "tools/quillonctl/Listeners.h"

namespace {

/// The program under test, and this process in the part of the monitor.
class PrinterProcessorTest : public testing::Test {
protected:
    PrinterProcessorTest() { GPPIPCManager::AddReference(); }
    ~PrinterProcessorTest() override { GPPIPCManager::ReleaseReference(); }

    ChildProcess Start(const wchar_t* options) {
        return ChildProcess(std::wstring(L"PrinterProcessorWin.exe") + options, mOutput, mError);
    }
    /// False when the program ended or half a minute passed without it.
    template <class Condition>
    static bool WaitUntil(const ChildProcess& program, Condition condition) {
        for (int i = 0; i < 3000 && !condition(); ++i) {
            if (!program.IsRunning()) return condition();
            ::Sleep(10);
        }
        return condition();
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
        const std::wstring path = mFolder.WriteFile(L"job.ps", "%!PS");
        const auto jobPath = GPathName::FromNative(FromWide(path.c_str(), static_cast<long>(path.size())));
        Send(program, GPPJobRecord(GString(user), jobPath, GString("Proof"), GString("QuillonPDFPort:"), 1)
                          .GetMessageData());
    }

    TemporaryFolder mFolder{"printer-processor-test"};
    std::wstring mOutput = mFolder.GetFile(L"out");
    std::wstring mError = mFolder.GetFile(L"err");
};

TEST_F(PrinterProcessorTest, WithOnceItEndsAfterTheFirstJob) {
    const ChildProcess program = Start(L" --json --once");
    ASSERT_TRUE(WaitUntil(program, [&] { return IsListening(program); }));
    SendJob(program, "anna");
    EXPECT_EQ(program.WaitForExitCode(), 0);
    const std::string output = TemporaryFolder::ReadFile(mOutput);
    EXPECT_THAT(output, testing::StartsWith("{\"JobPath\":\""));
    EXPECT_THAT(output, testing::EndsWith("\\\\job.ps\",\"JobBytes\":4,\"UserName\":\"anna\",\"PrinterName\":"
                                          "\"Proof\",\"PortName\":\"QuillonPDFPort:\",\"CopyCount\":1}\n"));
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
    EXPECT_FALSE(IsListening(program));
}

TEST_F(PrinterProcessorTest, WhatIsNoRecordIsReportedAndTheNextJobStillArrives) {
    const ChildProcess program = Start(L" --once");
    ASSERT_TRUE(WaitUntil(program, [&] { return IsListening(program); }));
    Send(program, GBuffer("no dictionary at all"));
    Send(program, GBuffer("#BEGINDICT\r\n\"UserName\"\r\n#ENDDICT\r\n"));
    Send(program, GBuffer());
    SendJob(program, "berta");
    EXPECT_EQ(program.WaitForExitCode(), 0);
    EXPECT_THAT(TemporaryFolder::ReadFile(mOutput), testing::HasSubstr("\nUser: berta\n"));
    const std::string errors = TemporaryFolder::ReadFile(mError);
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 4) << errors;
    EXPECT_THAT(errors, testing::HasSubstr("holds no job record"));
}

TEST_F(PrinterProcessorTest, AnUnknownOptionEndsItAtOnce) {
    const ChildProcess program = Start(L" --nope");
    EXPECT_EQ(program.WaitForExitCode(), 2);
    EXPECT_THAT(TemporaryFolder::ReadFile(mError), testing::HasSubstr("--once"));
    EXPECT_EQ(TemporaryFolder::ReadFile(mOutput), "");
}

TEST_F(PrinterProcessorTest, TheListOfListenersNamesItOnceAndTellsWhenItHasEnded) {
    const auto find = [](const ChildProcess& program) {
        std::vector<Listener> listeners = Listeners::GetAll();
        std::erase_if(listeners,
                      [&](const Listener& l) { return l.processID != static_cast<long>(program.GetID()); });
        return listeners;
    };
    const ChildProcess program = Start(L"");
    ASSERT_TRUE(WaitUntil(program, [&] { return IsListening(program); }));
    auto found = find(program);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(found[0].isListening);
    EXPECT_GE(found[0].session, -1);

    program.Kill();
    found = find(program);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_FALSE(found[0].isListening);
}

}  // namespace
