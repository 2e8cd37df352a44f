#include "monitor/handoff/GPPJobRecord.h"

#include <gmock/gmock.h>

#include <string>
#include <tuple>

#include "framework/core/paths/GPathName.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

TEST(GPPJobRecord, TravelsAsUTF8DictionaryText) {
    GPathName path;
    path.SetNativePathString(GString::FromUTF8("C:\\Temp\\j\xC3\xBCrgen\\Proof\\Q3 report.ps"));
    const GPPJobRecord record(GString::FromUTF8("j\xC3\xBCrgen"), path, GString("Proof"),
                              GString("QuillonPDFPort:"), 1);
    const std::string text = BytesOf(record.GetMessageData());
    EXPECT_THAT(text, testing::StartsWith("#BEGINDICT\r\n"));
    EXPECT_THAT(text, testing::EndsWith("\r\n#ENDDICT\r\n"));
    std::size_t length = 22;  // of the first and the last line
    for (const std::string entry :
         {"\"UserName\" \"j\xC3\xBCrgen\"\r\n",
          "\"JobPath\" \"C:\\\\Temp\\\\j\xC3\xBCrgen\\\\Proof\\\\Q3 report.ps\"\r\n",
          "\"PrinterName\" \"Proof\"\r\n", "\"PortName\" \"QuillonPDFPort:\"\r\n",
          "\"CopyCount\" \"1\"\r\n"}) {
        EXPECT_THAT(text, testing::HasSubstr("\r\n" + entry));
        length += entry.size();
    }
    EXPECT_EQ(text.size(), length);
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
