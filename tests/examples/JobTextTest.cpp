#include "examples/PrinterProcessorWin/JobText.h"

#include <gmock/gmock.h>

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
