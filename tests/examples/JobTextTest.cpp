#include "examples/PrinterProcessorWin/JobText.h"

#include <gmock/gmock.h>

#include <tuple>

#include "monitor/handoff/GPPJobRecord.h"
#include "tools/console/Console.h"

namespace {

GPPJobRecord MakeRecord(const std::string& dictionaryText) {
    GPPJobRecord record;
    const GBuffer data(reinterpret_cast<const unsigned char*>(dictionaryText.data()),
                       static_cast<long>(dictionaryText.size()));
    EXPECT_TRUE(record.SetFromMessageData(data));
    return record;
}

const char cFullRecord[] =
    "#BEGINDICT\r\n"
    "\"UserName\" \"J\xC3\xBCrgen \\\"J\\\"\"\r\n"
    "\"JobPath\" \"C:\\\\Temp\\\\a.ps\"\r\n"
    "\"PrinterName\" \"Proof\"\r\n"
    "\"PortName\" \"QuillonPDFPort:\"\r\n"
    "\"CopyCount\" \"1\"\r\n"
    "#ENDDICT\r\n";

const JobFile cTaken{L"C:\\Temp\\a (taken 1-1).ps", 12345, true, L"", L"A\tb", 3};
const JobFile cNotTaken;

TEST(JobText, AFullRecordAsLinesAndAsJson) {
    EXPECT_EQ(ToUTF8(FormatAsLines(MakeRecord(cFullRecord), cTaken)),
              "Job file: C:\\Temp\\a (taken 1-1).ps\nBytes: 12345\nTitle: A?b\nPages: 3\nUser: J\u00FCrgen "
              "\"J\"\nPrinter: Proof\n"
              "Port: QuillonPDFPort:\nCopies: 1\n\n");
    EXPECT_EQ(ToUTF8(FormatAsJson(MakeRecord(cFullRecord), cTaken)),
              "{\"JobPath\":\"C:\\\\Temp\\\\a.ps\",\"JobFile\":\"C:\\\\Temp\\\\a (taken "
              "1-1).ps\",\"JobBytes\":12345,\"Complete\":true,\"Title\":\"A\\tb\",\"Pages\":3,\"UserName\":"
              "\"J\u00FCrgen \\\"J\\\"\","
              "\"PrinterName\":\"Proof\",\"PortName\":\"QuillonPDFPort:\",\"CopyCount\":1}\n");
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

TEST(JobText, ARecordWithoutValuesIsStillWellFormed) {
    const GPPJobRecord record = MakeRecord("#BEGINDICT\r\n#ENDDICT\r\n");
    EXPECT_EQ(
        ToUTF8(FormatAsLines(record, cNotTaken)),
        "Job file: \nBytes: unknown\nTitle: \nPages: unknown\nUser: \nPrinter: \nPort: \nCopies: 0\n\n");
    EXPECT_EQ(ToUTF8(FormatAsJson(record, cNotTaken)),
              "{\"JobPath\":\"\",\"JobFile\":null,\"JobBytes\":null,\"Complete\":null,\"Title\":null,"
              "\"Pages\":null,\"UserName\":\"\","
              "\"PrinterName\":\"\",\"PortName\":\"\","
              "\"CopyCount\":0}\n");
}

TEST(JobText, ValuesCannotSteerTheTerminalNorAddLines) {
    const GPPJobRecord record =
        MakeRecord("#BEGINDICT\r\n\"UserName\" \"a\\nCopies: 9\x1B[2J\x7F\xC2\x9B\xC2\xA0\"\r\n#ENDDICT\r\n");
    const std::string lines = ToUTF8(FormatAsLines(record, cNotTaken));
    EXPECT_THAT(lines, testing::HasSubstr("\nUser: a??Copies: 9?[2J??\xC2\xA0\nPrinter:"));
    EXPECT_THAT(ToUTF8(FormatAsJson(record, cNotTaken)),
                testing::HasSubstr(R"(:"a\r\nCopies: 9\u001b[2J\u007f)"));
}

}  // namespace
