#include "monitor/handoff/GSettingsInterface.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/text/GBin2TextStream.h"

namespace {

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

TEST(GSettingsInterface, SetsReplacesAndClearsAndCopiesAreIndependent) {
    static_assert(std::is_abstract_v<GSettingsInterface>);
    StringSettings settings;
    EXPECT_EQ(settings.Find(GPPSettingsKey::cActorName), nullptr);
    settings.Set(GPPSettingsKey::cActorName, GString("first"));
    StringSettings copy(settings);
    settings.Set(GPPSettingsKey::cActorName, GString("second"));
    settings.Set(GPPSettingsKey::cIsPlugin, GString("true"));
    EXPECT_TRUE(*settings.Find("ActorName") == GString("second"));
    EXPECT_TRUE(*copy.Find("ActorName") == GString("first"));
    EXPECT_EQ(settings.Find("actorname"), nullptr);
    copy = settings;
    settings.Clear();
    EXPECT_EQ(settings.Find("IsPlugin"), nullptr);
    EXPECT_TRUE(*copy.Find("ActorName") == GString("second"));
}

TEST(GSettingsInterface, SurvivesAsText) {
    StringSettings settings;
    settings.Set(GPPSettingsKey::cApplicationPath, GString("C:\\Program Files\\x.exe"));
    settings.Set(GPPSettingsKey::cPDFSettings, GString("\"a\"\n#b"));
    settings.Store();
    StringSettings other(settings);
    other.Clear();
    other.Set("Old", GString("1"));
    EXPECT_TRUE(other.Load());
    EXPECT_TRUE(*other.Find("ApplicationPath") == GString("C:\\Program Files\\x.exe"));
    EXPECT_TRUE(*other.Find("PDFSettings") == GString("\"a\"\r\n#b"));
    EXPECT_EQ(other.Find("Old"), nullptr);
    other.Forget();
    EXPECT_FALSE(other.Load());
}

}  // namespace
