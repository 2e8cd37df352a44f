#include "monitor/GPPJobRecord.h"

#include <gmock/gmock.h>

#include <string>
#include <tuple>
#include <vector>

#include "framework/core/GPathName.h"
#include "framework/core/GUTF8Encoding.h"

namespace {

std::string BytesOf(const GBuffer& bytes) {
    return std::string(bytes.GetPtr(), bytes.GetLength());
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
        lines.push_back(text.substr(start, end - start));
    }
    lines.push_back(text.substr(start));
    return lines;
}

TEST(GPPJobRecord, TravelsAsUTF8DictionaryText) {
    GPathName path;
    path.SetNativePathString(GString::FromUTF8("C:\\Temp\\j\xC3\xBCrgen\\Proof\\Q3 report.ps"));
    const GPPJobRecord record(GString::FromUTF8("j\xC3\xBCrgen"), path, GString("Proof"),
                              GString("QuillonPDFPort:"), 1);
    const std::vector<std::string> lines = LinesOf(BytesOf(record.GetMessageData()));
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_EQ(lines.front(), "#BEGINDICT");
    EXPECT_EQ(lines[6], "#ENDDICT");
    EXPECT_EQ(lines[7], "");
    EXPECT_THAT(std::vector<std::string>(lines.begin() + 1, lines.begin() + 6),
                testing::UnorderedElementsAre(
                    "\"UserName\" \"j\xC3\xBCrgen\"",
                    "\"JobPath\" \"C:\\\\Temp\\\\j\xC3\xBCrgen\\\\Proof\\\\Q3 report.ps\"",
                    "\"PrinterName\" \"Proof\"", "\"PortName\" \"QuillonPDFPort:\"", "\"CopyCount\" \"1\""));
}

TEST(GPPJobRecord, IsTheSameAfterTheJourney) {
    GPathName path;
    path.SetNativePathString(GString("C:\\a \"b\"\\c.ps"));
    const GPPJobRecord sent(GString("anna"), path, GString("Two\tWords"), GString("QuillonPDFPort:"), 3);
    GPPJobRecord received;
    EXPECT_TRUE(received.SetFromMessageData(sent.GetMessageData()));
    EXPECT_TRUE(received.GetUserName() == GString("anna"));
    EXPECT_TRUE(received.GetJobPath() == GString("C:\\a \"b\"\\c.ps"));
    EXPECT_TRUE(received.GetPrinterName() == GString("Two\tWords"));
    EXPECT_TRUE(received.GetPortName() == GString("QuillonPDFPort:"));
    EXPECT_EQ(received.GetCopyCount(), 3);
    EXPECT_EQ(BytesOf(received.GetMessageData()), BytesOf(sent.GetMessageData()));
}

TEST(GPPJobRecord, ReadsWhatOthersWrite) {
    const std::tuple<const char*, const char*, bool, const char*, int> rows[] = {
        {"another order and an unknown key",
         "#BEGINDICT\r\n\"CopyCount\" \"12\"\r\n\"Color\" \"no\"\r\n\"UserName\" \"b\"\r\n#ENDDICT\r\n", true,
         "b", 12},
        {"nothing in it", "#BEGINDICT\r\n#ENDDICT\r\n", true, "", 0},
        {"no number", "#BEGINDICT\r\n\"CopyCount\" \"many\"\r\n#ENDDICT\r\n", true, "", 0},
        {"no text at all", "", false, "", 0},
        {"cut off", "#BEGINDICT\r\n\"UserName\" \"b\"\r\n\"Cop", false, "b", 0},
        {"foreign bytes", "\x01\x02\xFF\xFF", false, "", 0},
    };
    for (const auto& [what, data, good, user, copies] : rows) {
        SCOPED_TRACE(what);
        GPPJobRecord record;
        EXPECT_EQ(record.SetFromMessageData(GBuffer(data)), good);
        EXPECT_TRUE(record.GetUserName() == GString(user));
        EXPECT_EQ(record.GetCopyCount(), copies);
        EXPECT_TRUE(record.GetValue("Missing").IsEmpty());
    }
}

}  // namespace
