#include "monitor/handoff/GPPJobRecord.h"

#include "framework/core/paths/GPathName.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "monitor/handoff/GSettingsInterface.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

TEST(GPPJobRecord, TravelsAsUTF8DictionaryTextAndIsTheSameAfterwards) {
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
    GPPJobRecord received;
    EXPECT_TRUE(received.SetFromMessageData(record.GetMessageData()));
    EXPECT_TRUE(received.GetUserName() == GString::FromUTF8("j\xC3\xBCrgen"));
    EXPECT_TRUE(received.GetJobPath() == path.GetNativePathString());
    EXPECT_TRUE(received.GetPrinterName() == GString("Proof"));
    EXPECT_TRUE(received.GetPortName() == GString("QuillonPDFPort:"));
    EXPECT_EQ(received.GetCopyCount(), 1);
}

TEST(GPPJobRecord, ReadsWhatOthersWrite) {
    const std::tuple<const char*, const char*, bool, const char*, int> rows[] = {
        {"another order and an unknown key",
         "#BEGINDICT\r\n\"CopyCount\" \"12\"\r\n\"Color\" \"no\"\r\n\"UserName\" \"b\"\r\n#ENDDICT\r\n", true,
         "b", 12},
        {"no number", "#BEGINDICT\r\n\"CopyCount\" \"many\"\r\n#ENDDICT\r\n", true, "", 0},
        {"cut off", "#BEGINDICT\r\n\"UserName\" \"b\"\r\n\"Cop", false, "b", 0}};
    for (const auto& [what, data, good, user, copies] : rows) {
        SCOPED_TRACE(what);
        GPPJobRecord record;
        EXPECT_EQ(record.SetFromMessageData(GBuffer(data)), good);
        EXPECT_TRUE(record.GetUserName() == GString(user));
        EXPECT_EQ(record.GetCopyCount(), copies);
        EXPECT_TRUE(record.GetValue("Missing").IsEmpty());
    }
}

/// Keeps its text in a string.
class StringSettings final : public GSettingsInterface {
public:
    bool Load() override {
        const GBuffer bytes = mKept.GetBuffer(GUTF8Encoding::GetInstance());
        GMemoryInStream source(bytes);
        GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
        return ReadText(stream);
    }
    void Store() const override { WriteText(mKept); }
    void Forget() override { mKept.Clear(); }

    mutable GString mKept;
};

TEST(GSettingsInterface, SurvivesAsText) {
    StringSettings settings;
    settings.Set(GPPSettingsKey::cActorName, GString("\"a\"\n#b"));
    settings.Store();
    settings.Clear();
    EXPECT_EQ(settings.Find(GPPSettingsKey::cActorName), nullptr);
    settings.Set("Old", GString("1"));
    EXPECT_TRUE(settings.Load());
    EXPECT_TRUE(*settings.Find("ActorName") == GString("\"a\"\r\n#b"));
    EXPECT_EQ(settings.Find("Old"), nullptr);
    settings.Forget();
    EXPECT_FALSE(settings.Load());
}

}  // namespace
