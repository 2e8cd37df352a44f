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
    using R = ProgramResult;
    // A result, its outcome in both forms, what lines say behind that, and two numbers as JSON has them.
    const std::tuple<R, std::string, const char*, const char*, const char*> rows[] = {
        {{R::cSucceeded, 0, 812, L""}, "succeeded", "with exit code 0 after 0.812 s", "0", "812"},
        {{R::cFailed, 65535, 61000, L""}, "failed", "with exit code 65535 after 61.000 s", "65535", "61000"},
        {{R::cCrashed, 0xC0000005, 5, L""},
         "crashed",
         "with exit code 0xC0000005 after 0.005 s",
         "3221225477",
         "5"},
        {{R::cNotStarted, 0, 0, L"no memory"}, "not started:", "no memory", "null", "null"},
        {{R::cStillRunning, 0, 1500, L""}, "running", "for 1.500 s", "null", "null"}};
    const std::wstring program = L"C:\\gs.exe";
    for (const auto& [result, outcome, how, code, time] : rows) {
        EXPECT_EQ(
            ToUTF8(FormatAsLines(cTaken, program, result)),
            "Job file: C:\\Temp\\a (taken 1-1).ps\nProgram: C:\\gs.exe " + outcome + " " + how + "\n\n");
        EXPECT_EQ(ToUTF8(FormatAsJson(cTaken, program, result)),
                  R"({"JobFile":"C:\\Temp\\a (taken 1-1).ps","Program":"C:\\gs.exe","Outcome":")" +
                      outcome.substr(0, outcome.find(':')) + R"(","ExitCode":)" + code +
                      R"(,"Milliseconds":)" + time + "}\n");
    }
}

}  // namespace
