#include "examples/PrinterProcessorWin/JobText.h"

#include "framework/core/paths/GPathName.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "tests/Testing.h"
#include "tools/console/Console.h"

namespace {

const JobFile cTaken{L"C:\\Temp\\a (taken 1-1).ps", 12345, true, L"", L"A\tb", 3};
const JobFile cNotTaken;

TEST(JobText, ARecordAsLinesAndAsJson) {
    const GPPJobRecord full("anna \"J\"", GPathName::FromNative("C:\\Temp\\a.ps"), "Proof",
                            "QuillonPDFPort:", 1);
    GPPJobRecord evil;
    EXPECT_TRUE(evil.SetFromMessageData(
        "#BEGINDICT\r\n\"UserName\" \"a\\nCopies: 9\x1B[2J\x7F\u009B\u00A0\"\r\n#ENDDICT\r\n"));
    const std::tuple<const char*, const GPPJobRecord&, const JobFile&, const char*, const char*> rows[] = {
        {"with all values", full, cTaken,
         "Job file: C:\\Temp\\a (taken 1-1).ps\nBytes: 12345\nTitle: A?b\nPages: 3\n"
         "User: anna \"J\"\nPrinter: Proof\nPort: QuillonPDFPort:\nCopies: 1\n\n",
         R"({"JobPath":"C:\\Temp\\a.ps","JobFile":"C:\\Temp\\a (taken 1-1).ps","JobBytes":12345,)"
         R"("Complete":true,"Title":"A\tb","Pages":3,"UserName":"anna \"J\"",)"
         R"("PrinterName":"Proof","PortName":"QuillonPDFPort:","CopyCount":1})"},
        {"values that would steer the terminal or add lines, and none", evil, cNotTaken,
         "Job file: \nBytes: unknown\nTitle: \nPages: unknown\nUser: a??Copies: 9?[2J??\u00A0\n"
         "Printer: \nPort: \nCopies: 0\n\n",
         R"({"JobPath":"","JobFile":null,"JobBytes":null,"Complete":null,"Title":null,"Pages":null,)"
         R"("UserName":"a\r\nCopies: 9\u001b[2J\u007f)"
         "\u009B\u00A0"
         R"(","PrinterName":"","PortName":"","CopyCount":0})"}};
    for (const auto& [what, record, file, lines, json] : rows) {
        EXPECT_EQ(ToUTF8(FormatAsLines(record, file)), lines) << what;
        EXPECT_EQ(ToUTF8(FormatAsJson(record, file)), std::string(json) + "\n") << what;
    }
}

TEST(JobText, HowAProgramEndedAsLinesAndAsJson) {
    const std::tuple<ProgramResult, const char*, const char*> rows[] = {
        {{ProgramResult::cSucceeded, 0, 812, L""},
         "succeeded with exit code 0 after 0.812 s",
         R"("succeeded","ExitCode":0,"Milliseconds":812)"},
        {{ProgramResult::cFailed, 65535, 61000, L""},
         "failed with exit code 65535 after 61.000 s",
         R"("failed","ExitCode":65535,"Milliseconds":61000)"},
        {{ProgramResult::cCrashed, 0xC0000005, 5, L""},
         "crashed with exit code 0xC0000005 after 0.005 s",
         R"("crashed","ExitCode":3221225477,"Milliseconds":5)"},
        {{ProgramResult::cNotStarted, 0, 0, L"no memory"},
         "not started: no memory",
         R"("not started","ExitCode":null,"Milliseconds":null)"},
        {{ProgramResult::cStillRunning, 0, 1500, L""},
         "running for 1.500 s",
         R"("running","ExitCode":null,"Milliseconds":null)"},
    };
    const std::wstring program = L"C:\\gs.exe";
    for (const auto& [result, lines, json] : rows) {
        EXPECT_EQ(ToUTF8(FormatAsLines(cTaken, program, result)),
                  std::string("Job file: C:\\Temp\\a (taken 1-1).ps\nProgram: C:\\gs.exe ") + lines + "\n\n");
        EXPECT_EQ(ToUTF8(FormatAsJson(cTaken, program, result)),
                  R"({"JobFile":"C:\\Temp\\a (taken 1-1).ps","Program":"C:\\gs.exe","Outcome":)" +
                      std::string(json) + "}\n");
    }
}

}  // namespace
