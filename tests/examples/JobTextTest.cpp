#include "examples/PrinterProcessorWin/JobText.h"

#include <gmock/gmock.h>

#include <thread>

#include "examples/PrinterProcessorWin/JobFile.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/base/PWin32Api.h"
#include "tests/files/TestFolder.h"
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

TEST(JobText, AFullRecordAsLinesAndAsJson) {
    EXPECT_EQ(ToUTF8(FormatAsLines(MakeRecord(cFullRecord), 12345)),
              "Job file: C:\\Temp\\a.ps\nBytes: 12345\nUser: J\u00FCrgen \"J\"\nPrinter: Proof\n"
              "Port: QuillonPDFPort:\nCopies: 1\n\n");
    EXPECT_EQ(ToUTF8(FormatAsJson(MakeRecord(cFullRecord), 12345)),
              "{\"JobPath\":\"C:\\\\Temp\\\\a.ps\",\"JobBytes\":12345,\"UserName\":\"J\u00FCrgen \\\"J\\\"\","
              "\"PrinterName\":\"Proof\",\"PortName\":\"QuillonPDFPort:\",\"CopyCount\":1}\n");
}

TEST(JobText, ARecordWithoutValuesIsStillWellFormed) {
    const GPPJobRecord record = MakeRecord("#BEGINDICT\r\n#ENDDICT\r\n");
    EXPECT_EQ(ToUTF8(FormatAsLines(record, std::nullopt)),
              "Job file: \nBytes: unknown\nUser: \nPrinter: \nPort: \nCopies: 0\n\n");
    EXPECT_EQ(ToUTF8(FormatAsJson(record, std::nullopt)),
              "{\"JobPath\":\"\",\"JobBytes\":null,\"UserName\":\"\",\"PrinterName\":\"\",\"PortName\":\"\","
              "\"CopyCount\":0}\n");
}

TEST(JobText, ValuesCannotSteerTheTerminalNorAddLines) {
    const GPPJobRecord record =
        MakeRecord("#BEGINDICT\r\n\"UserName\" \"a\\nCopies: 9\x1B[2J\x7F\xC2\x9B\xC2\xA0\"\r\n#ENDDICT\r\n");
    const std::string lines = ToUTF8(FormatAsLines(record, 0));
    EXPECT_THAT(lines, testing::HasSubstr("\nUser: a??Copies: 9?[2J??\xC2\xA0\nPrinter:"));
    EXPECT_THAT(ToUTF8(FormatAsJson(record, 0)), testing::HasSubstr(R"(:"a\r\nCopies: 9\u001b[2J\u007f)"));
}

TEST(WaitForJobFile, TellsTheSizeOfAClosedFileAndWaitsForNoMissingOne) {
    const TestFolder folder;
    folder.Put("a.ps", "12345");
    EXPECT_EQ(WaitForJobFile(folder.Portable("a.ps").GetNativePathString()), 5u);
    EXPECT_FALSE(WaitForJobFile(folder.Portable("missing.ps").GetNativePathString()));
    EXPECT_FALSE(WaitForJobFile(GString()));
}

TEST(WaitForJobFile, WaitsUntilTheWriterHasClosed) {
    const TestFolder folder;
    const std::wstring path = folder.Standard("a.ps");
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    // As the monitor does it once its notification has been taken.
    std::thread closer([file] {
        DWORD written = 0;
        ::Sleep(100);
        ::WriteFile(file, "last", 4, &written, nullptr);
        ::CloseHandle(file);
    });
    EXPECT_EQ(WaitForJobFile(folder.Portable("a.ps").GetNativePathString()), 4u);
    closer.join();
}

}  // namespace
