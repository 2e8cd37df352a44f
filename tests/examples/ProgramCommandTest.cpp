#include "examples/PrinterProcessorWin/ProgramCommand.h"

#include "examples/PrinterProcessorWin/JobProgram.h"
#include "examples/PrinterProcessorWin/JobVariables.h"
#include "tests/platform/PeerProgram.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

using testing::HasSubstr;

Job MakeJob(const std::wstring& path, const char* user, const char* printer = "Proof") {
    Job job{GPPJobRecord(user, GPathName::FromNative("C:\\x.ps"), printer, "QuillonPDFPort:", 2), {}};
    job.file.path = path;
    job.file.number = 7;
    return job;
}

ProgramResult RunToItsEnd(const std::wstring& command, Job job) {
    JobProgram program(ProgramCommand(command), std::move(job));
    while (!program.HasEnded()) ::WaitForSingleObject(program.GetHandle(), 30000);
    return program.GetResult();
}

TEST(ProgramCommand, RefusesWhatItCouldNotRunSafely) {
    const TestFolder folder;
    const std::wstring root = folder.Standard("").wstring();
    for (const char* name : {"x.bat", "x.CMD", "x.txt", "x.exe.txt"}) folder.Put(name, "exit");
    const std::tuple<std::wstring, const char*> rows[] = {
        {L"  ", "needs a program"},
        {L"no-such-program %JobPath%", "no program no-such-program"},
        {root + L"missing.exe", "no program"},
        {root, "no program"},
        {root + L"x.bat", "no batch file"},
        {L'"' + root + L"X.Bat\" %JobPath%", "no batch file"},
        {root + L"x.CMD", "no batch file"},
        {root + L"x.bat. ", "no batch file"},
        {L"x.bat", "no batch file"},
        {root + L"x.bat::$DATA", "no program"},
        {root + L"x.txt", "is no program"},
        {root + L"x.exe.txt", "is no program"},
        {L"%JobPath%", "no other variables than folders"},
        {L"cmd %Nope%", "no variable %Nope%"},
        {L"cmd a %User Name%", "no partner in %User"},
        {L"cmd 100%", "no partner"},
    };
    for (const auto& [text, expected] : rows) {
        SCOPED_TRACE(ToUTF8(text));
        try {
            const ProgramCommand command(text);
            ADD_FAILURE() << "was taken";
        } catch (const UsageFailure& failure) {
            EXPECT_THAT(ToUTF8(failure.GetText()), HasSubstr(expected));
        }
    }
    EXPECT_THAT(ToUTF8(ProgramCommand(L"cmd /c dir %JobName%").GetWarning()), HasSubstr("QUILLON_JOB_PATH"));
    EXPECT_EQ(ProgramCommand(L"cmd.exe /c dir").GetWarning(), L"");
    EXPECT_EQ(ProgramCommand(L"xcopy %JobPath% %Desktop%").GetWarning(), L"");
}

// What a job is called never makes another argument, another program or an option of one, and is expanded
// once.
TEST(ProgramCommand, EachArgumentArrivesAsOneWhateverTheJobIsCalled) {
    const TestFolder folder;
    const std::wstring peer = L'"' + AsStandard(PeerPath().GetNativePathString()) + L"\" argv \"" +
                              folder.Standard("argv").wstring() + L"\" ";
    // Arguments, the job's path and user, and what arrives.
    const std::tuple<const wchar_t*, const wchar_t*, const char*, const char16_t*> rows[] = {
        {L"%JobPath%", L"C:\\a b\\Letter (taken 4711-7).ps", "", u"C:\\a b\\Letter (taken 4711-7).ps|"},
        {L"-o=%JobName%.pdf -x", L"C:\\a b\\Letter (taken 4711-7).ps", "", u"-o=Letter.pdf|-x|"},
        {L"%JobPath% %JobName%", L"C:\\%JobPath% & calc %PATH%^'.ps", "",
         u"C:\\%JobPath% & calc %PATH%^'.ps|_JobPath_ & calc _PATH_^'|"},
        {L"\"%JobPath%\" b", L"C:\\trailing\\", "", u"C:\\trailing\\|b|"},
        {L"%UserName%", L"", "a\" & calc \"\\", u"a_ & calc __|"},
        {L"%UserName% \"%User Name%\"", L"", "-dNOSAFER", u"_dNOSAFER|_dNOSAFER|"},
        {L"%UserName% x%UserName%", L"", "@list", u"_list|x_list|"},
        {L"%UserName%", L"", "..", u"__|"},
        {L"%UserName%", L"", "", u"_|"},
        {L"%UserName%", L"", "line\nend\ttab", u"line_end_tab|"},
        {L"%PrinterName% %PortName% %CopyCount% 100%%", L"", "", u"__server_Proof|QuillonPDFPort_|2|100%|"},
        {L"\"a \\\"b\\\" *\" \"\" /c", L"", "", u"a \"b\" *||/c|"},
    };
    for (const auto& [arguments, path, user, expected] : rows) {
        const ProgramResult result = RunToItsEnd(peer + arguments, MakeJob(path, user, "\\\\server\\Proof"));
        EXPECT_EQ(result.outcome, ProgramResult::cSucceeded) << ToUTF8(result.problem);
        std::u16string arrived = WrittenArguments(folder).first;
        std::replace(arrived.begin(), arrived.end(), u'\0', u'|');
        EXPECT_EQ(arrived, expected);
    }
}

TEST(ProgramCommand, ABatchFileBehindCmdFindsTheJobInItsEnvironment) {
    const TestFolder folder;
    folder.Put("job.bat", "@set QUILLON_>\"%~dp0out\"\r\n@exit 5\r\n");
    ::SetEnvironmentVariableW(L"QUILLON_PORT_NAME", L"before");
    const ProgramResult result = RunToItsEnd(L"cmd /c " + folder.Standard("job.bat").wstring(),
                                             MakeJob(L"C:\\a&b\\Letter (taken 1-1).ps", "DOMAIN\\a\"b\n"));
    EXPECT_EQ(result.exitCode, 5u);
    EXPECT_EQ(result.outcome, ProgramResult::cFailed);
    EXPECT_EQ(folder.Take("out"),
              "QUILLON_COPY_COUNT=2\r\nQUILLON_JOB_NAME=Letter\r\nQUILLON_JOB_PATH=C:\\a&b\\Letter (taken "
              "1-1).ps\r\n"
              "QUILLON_PORT_NAME=QuillonPDFPort:\r\nQUILLON_PRINTER_NAME=Proof\r\n"
              "QUILLON_USER_NAME=DOMAIN\\a_b_\r\n");
    wchar_t value[20] = L"";
    EXPECT_EQ(::GetEnvironmentVariableW(L"QUILLON_PORT_NAME", value, 20), 6u) << "as it was before";
    ::SetEnvironmentVariableW(L"QUILLON_PORT_NAME", nullptr);
    EXPECT_EQ(::GetEnvironmentVariableW(L"QUILLON_JOB_PATH", value, 20), 0u);
}

TEST(ProgramResult, OnlyZeroIsASuccess) {
    EXPECT_EQ(ProgramResult::Judge(0), ProgramResult::cSucceeded);
    for (const unsigned long code : {1UL, 259UL, 0xFFFFFFFFUL})
        EXPECT_EQ(ProgramResult::Judge(code), ProgramResult::cFailed) << code;
    for (const unsigned long code : {0xC0000005UL, 0x80000003UL, 0xE06D7363UL})
        EXPECT_EQ(ProgramResult::Judge(code), ProgramResult::cCrashed) << code;
    const TestFolder folder;
    const std::filesystem::path gone = folder.Put("gone.exe", "");
    const ProgramCommand command(gone.wstring());
    std::filesystem::remove(gone);
    JobProgram program(command, MakeJob(L"C:\\x.ps", ""));
    EXPECT_TRUE(program.HasEnded());
    EXPECT_EQ(program.GetResult().outcome, ProgramResult::cNotStarted);
    EXPECT_THAT(ToUTF8(program.GetResult().problem), HasSubstr("error 2"));
}

}  // namespace
