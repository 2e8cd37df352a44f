#include "framework/services/GPreferences.h"

#include "framework/files/GFileSystem.h"
#include "framework/files/GLockFile.h"
#include "framework/services/GPrefFileModule.h"
#include "tests/core/ThrownBy.h"
#include "tests/files/TestFolder.h"

namespace {

constexpr long cShared = -2;
constexpr long cUser = -3;
constexpr long cSystem = -4;
constexpr long cDefaults = -5;

struct GPreferencesTest : FolderTest {
    GPreferencesTest() {
        GFileSystem::AddSpecialPath(GSpecialPath::cUserPreferences, mFolder.Portable("user"));
        GFileSystem::AddSpecialPath(GSpecialPath::cGlobalPreferences, mFolder.Portable("global"));
        GPreferences::Initialize();
    }
    ~GPreferencesTest() override {
        GPreferences::Finalize();
        GFileSystem::RemoveAllSpecialPaths();
    }
    /// The modules of the bits; all of them at first.
    static void Install(int bits = 15) {
        GPreferences::SetDefaultModules("App", static_cast<GPreferences::PrefDefaultModule>(bits));
    }
    static std::string Get(const GBuffer& group, const GBuffer& key) {
        return TextOf(GPreferences::Get(group, key));
    }
    static std::string Get(long id, const GBuffer& group, const GBuffer& key) {
        return TextOf(GPreferences::Get(id, group, key));
    }
};

TEST_F(GPreferencesTest, TheHighestModuleThatHasTheKeyAnswers) {
    Install(7);
    for (const long id : {cDefaults, cSystem, cUser}) {
        EXPECT_FALSE(GPreferences::Has(id, "g", "k"));
        GPreferences::Set(id, "g", "k", id);
        EXPECT_EQ(Get("g", "k"), std::to_string(id));
    }
    GPreferences::SetDefault(cSystem, "g", "k", 7L);
    EXPECT_EQ(Get(cSystem, "g", "k"), "-4");
    GPreferences::SetDefault(cSystem, "g", "new", 7L);
    EXPECT_EQ(Get("g", "new"), "7");
    for (const long id : {cUser, cSystem}) GPreferences::Remove(id, "g", "k");
    EXPECT_EQ(Get("g", "k"), "-5");
    GPreferences::Remove(cDefaults, "g");
    EXPECT_FALSE(GPreferences::Has("g", "k"));
    EXPECT_EQ(Get("g", "k"), "");
    for (const long id : {cShared, 0L, -6L}) {
        EXPECT_THROW(GPreferences::Set(id, "g", "k", 1L), GException) << id;
        EXPECT_THROW(GPreferences::Has(id, "g", "k"), GException) << id;
    }
    GPreferences::RemovePrefModule(cUser);
    EXPECT_EQ(GPreferences::GetPrefModule(cUser), nullptr);
}

TEST_F(GPreferencesTest, ASharedGroupLiesInTheSharedModuleAlone) {
    Install(4);
    for (const char* key : {"k", "m"}) GPreferences::Set(cUser, "Jobs", key, "own");
    GPreferences::SetPrefSharing(cUser, "Jobs", true);
    EXPECT_EQ(Get("Jobs", "k"), "") << "there is no shared module yet";
    Install(8);
    EXPECT_TRUE(GPreferences::IsPrefSharing("Jobs"));
    GPreferences::SetPrefSharing(cUser, "PrefSharing", true);
    EXPECT_FALSE(GPreferences::IsPrefSharing("PrefSharing"));
    EXPECT_EQ(Get("Jobs", "k"), "");
    GPreferences::SetDefault(cUser, "Jobs", "k", "default");
    EXPECT_EQ(Get("Jobs", "k") + Get(cShared, "Jobs", "k") + Get(cUser, "Jobs", "k"), "defaultdefaultown");
    GPreferences::Set(cUser, "Jobs", "k", "ours");
    EXPECT_EQ(TextOf(GPreferences::GetNonSharedPref("Jobs", "k")), "own");
    EXPECT_EQ(Get("Jobs", "k"), "ours");
    GPreferences::CopySharedPreferences();
    EXPECT_EQ(Get("Jobs", "k") + Get("Jobs", "m"), "ownown");
    GPreferences::Remove(cUser, "Jobs", "k");
    EXPECT_EQ(Get("Jobs", "k") + Get(cUser, "Jobs", "k"), "own");
    GPreferences::Set(cSystem + 1, "Jobs", "l", "x");
    GPreferences::Remove(cUser, "Jobs");
    EXPECT_FALSE(GPreferences::Has(cShared, "Jobs", "l"));
}

TEST_F(GPreferencesTest, ValuesOfEachTypeComeBack) {
    Install(1);
    const GDateTime moment(15, 3, 2014, 9, 30, 0, 1, 1, 0);
    GPreferences::Set(cDefaults, "g", "long", -2147483647L);
    GPreferences::Set(cDefaults, "g", "real", -0.125);
    GPreferences::Set(cDefaults, "g", "true", true);
    GPreferences::Set(cDefaults, "g", "TRUE", "TRUE");
    GPreferences::Set(cDefaults, "g", "path", GPathName("C:/a b/c"));
    GPreferences::Set(cDefaults, "g", "no path", GPathName());
    GPreferences::Set(cDefaults, "g", "date", moment);
    EXPECT_EQ(GPreferences::GetInt32("g", "long"), -2147483647);
    EXPECT_EQ(GPreferences::GetReal("g", "real"), -0.125);
    EXPECT_TRUE(GPreferences::GetBool("g", "true"));
    EXPECT_FALSE(GPreferences::GetBool("g", "TRUE"));
    EXPECT_EQ(GPreferences::GetPathName("g", "path"), GPathName("C:/a b/c"));
    EXPECT_TRUE(GPreferences::GetPathName("g", "no path").IsEmpty());
    EXPECT_EQ(GPreferences::GetDateTime("g", "date").CompareWith(moment), 0);
    const auto expectNone = [](auto asItWas) {
        auto out = asItWas;
        EXPECT_FALSE(GPreferences::Get("g", "none", out));
        EXPECT_TRUE(out == asItWas);
    };
    expectNone(4L), expectNone(true), expectNone(GString("text")), expectNone(GPathName("a/path"));
    GDateTime other(moment);
    EXPECT_FALSE(GPreferences::Get("g", "none", other) || GPreferences::Get("g", "path", other));
    GPreferences::SetScramble(cDefaults, "g", "s", GString::FromUTF8("secret \xE4\xB8\x80"));
    GPreferences::SetScramble(cDefaults, "g", "n", -77L);
    EXPECT_EQ(Get("g", "s").find("secret"), std::string::npos);
    EXPECT_EQ(TextOf(GPreferences::GetUnscramble("g", "s")), "secret \xE4\xB8\x80");
    EXPECT_EQ(GPreferences::GetUnscrambleInt32("g", "n"), -77);
    EXPECT_EQ(TextOf(GPreferences::GetUnscramble("g", "path")), "");
}

TEST_F(GPreferencesTest, PathsAreStoredWithVariables) {
    Install(1);
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, GPathName("T:/temp"));
    EXPECT_FALSE(GPreferences::WillSubstituteVariablesInPrefType(GVariableSubstitution::cPath));
    GPreferences::AddVariableSubstitution(
        new GVariableSubstitutionImp(GVariableSubstitutionImp::cGlobalTemp));
    EXPECT_TRUE(GPreferences::WillSubstituteVariablesInPrefType(GVariableSubstitution::cPath));
    EXPECT_FALSE(GPreferences::WillSubstituteVariablesInPrefType(GVariableSubstitution::cNoType));
    GPreferences::Set(cDefaults, "g", "k", GPathName("T:/temp/x"));
    EXPECT_EQ(Get("g", "k").substr(0, 18), "%SystemGlobalTemp%");
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, GPathName("U:/other"));
    EXPECT_EQ(TextOf(GPreferences::GetPathName("g", "k")), "U:/other/x");
}

TEST_F(GPreferencesTest, TemporaryModulesAreKeptOrDropped) {
    for (const bool keep : {false, true}) {
        SCOPED_TRACE(keep);
        Install(5);
        GPreferences::Set(cUser, "g", "k", "lasting");
        GPreferences::Set(cUser, "g", "gone", "lasting");
        GPreferences::StartUsingTempModules();
        GPreferences::Set(cUser, "g", "k", "temporary");
        GPreferences::Remove(cUser, "g", "gone");
        GPreferences::SetIgnoreTemp(cUser, "g", "stays", "x");
        EXPECT_EQ(Get("g", "k") + Get("g", "gone") + Get("g", "stays"), "temporaryx");
        GPreferences::FlushPrefs();
        GPrefFileModule file(mFolder.Portable("user/App.uprefs"), GUTF8Encoding::GetInstance());
        EXPECT_EQ(TextOf(file.Get("g", "k")), "lasting");
        GPreferences::EndUsingTempModules(keep);
        EXPECT_EQ(Get("g", "k") + Get("g", "gone") + Get("g", "stays"),
                  keep ? "temporaryx" : "lastinglastingx");
        GPreferences::Remove(cUser, "g");
        GPreferences::FlushPrefs();
    }
}

TEST_F(GPreferencesTest, FilesAreWrittenWhenSomethingHasChanged) {
    Install(14);
    EXPECT_FALSE(GPreferences::IsDirty());
    GPreferences::FlushPrefs();
    EXPECT_FALSE(mFolder.Has("user") || mFolder.Has("global"));
    for (const auto& [id, value] : {std::pair(cUser, "u"), {cShared, "s"}, {cSystem, "y"}})
        GPreferences::Set(id, "g", "k", value);
    GPreferences::Set(cSystem, "empty", "k", "y");
    GPreferences::Remove(cSystem, "empty", "k");
    EXPECT_TRUE(GPreferences::IsDirty());
    GPreferences::FlushPrefs();
    EXPECT_FALSE(GPreferences::IsDirty());
    const std::string text =
        "#BEGINPREFS\r\n\r\n\"g\"\r\n#BEGINDICT\r\n\"k\" \"y\"\r\n#ENDDICT\r\n\r\n#ENDPREFS\r\n";
    EXPECT_EQ(mFolder.Take("global/App.sprefs"), text);
    EXPECT_EQ(mFolder.Take("user/Quillon.uprefs").size(), 2 + 2 * text.size());
    EXPECT_TRUE(mFolder.Has("user/Quillon.uprefslock"));
    GPreferences::Finalize();
    Install(14);
    EXPECT_EQ(Get(cUser, "g", "k") + Get(cShared, "g", "k") + Get(cSystem, "g", "k"), "usy");
    mFolder.Put("global/App.sprefs",
                "#BEGINPREFS\n\"g\"\n#BEGINDICT\n\"k\" \"1\"\n\"l\" \"2\"\n#ENDDICT\n#ENDPREFS\n");
    GPreferences::Set(cSystem, "g", "l", "mine");
    GPreferences::Refresh();
    EXPECT_EQ(Get(cSystem, "g", "k") + Get(cSystem, "g", "l"), "1mine");
}

/// A module of a file that programs share, in UTF-16.
struct SharedModule : GPrefSharedFileModule {
    explicit SharedModule(const GPathName& path, long longestWait = cLongestWait)
        : GPrefSharedFileModule(path, GUnicodeEncoding::GetInstance(), longestWait) {}
    std::string TextAt(const char* group) { return TextOf(Get(group, "k")); }
};

TEST_F(GPreferencesTest, TwoThatShareAFileKeepEachOthersValues) {
    const GPathName path = mFolder.Portable("Quillon.uprefs");
    SharedModule one(path), other(path);
    one.Set("a", "k", "1");
    one.Set("b", "k", "1");
    one.FlushPrefs();
    other.Set("c", "k", "2");
    other.Remove("a", "k");
    other.FlushPrefs();
    EXPECT_EQ(other.TextAt("b"), "1") << "seen when it was written";
    EXPECT_EQ(other.TextAt("a"), "1") << "it did not know of it, so it removed nothing";
    one.RemoveGroup("b");
    one.Set("a", "k", "3");
    one.FlushPrefs();
    other.Refresh();
    EXPECT_EQ(other.TextAt("a") + other.TextAt("b") + other.TextAt("c"), "32");
    GLockFile reader(mFolder.Portable("Quillon.uprefslock"));
    EXPECT_TRUE(reader.Lock(GLockFile::cReadLock));
    EXPECT_EQ(SharedModule(path).TextAt("c"), "2") << "readers go together";
}

TEST_F(GPreferencesTest, ALockThatStaysTakenIsAFailureThatLosesNothing) {
    const GPathName path = mFolder.Portable("Quillon.uprefs");
    constexpr long cWait = 1;  // millisecond
    EXPECT_EQ(GPrefSharedFileModule::cLongestWait, 30000) << "for all others";
    SharedModule module(path, cWait);
    module.Set("g", "k", "written");
    module.FlushPrefs();
    module.Set("g", "k", "waits");
    const auto expectRefused = [](const auto& call) {
        EXPECT_EQ(ThrownBy(call), GExceptionID::cCouldNotLock);
    };
    GLockFile other(mFolder.Portable("Quillon.uprefslock"));
    for (const auto type : {GLockFile::cReadLock, GLockFile::cWriteLock}) {
        ASSERT_TRUE(other.Lock(type));
        expectRefused([&] { module.FlushPrefs(); });
        if (type == GLockFile::cWriteLock) {
            expectRefused([&] { module.Refresh(); });
            expectRefused([&] { SharedModule(path, cWait); });
        }
        EXPECT_TRUE(module.IsDirty());
        EXPECT_EQ(module.TextAt("g"), "waits");
        other.UnLock();
        EXPECT_EQ(SharedModule(path).TextAt("g"), "written");
    }
    module.FlushPrefs();
    EXPECT_EQ(SharedModule(path).TextAt("g"), "waits");
}

TEST_F(GPreferencesTest, ModulesAreInstalledReplacedAndMerged) {
    struct Counted : GPrefMemoryModule {
        explicit Counted(int& count) : mCount(count) { ++mCount; }
        ~Counted() override { --mCount; }
        int& mCount;
    };
    int count = 0;
    constexpr long cMine = -1;
    GPreferences::SetPrefModule(cDefaults, new Counted(count), true);
    GPreferences::SetPrefModule(cMine, new Counted(count), true);
    GPreferences::SetPrefModule(cMine, GPreferences::GetPrefModule(cMine), true);
    EXPECT_EQ(count, 2);
    GPrefMemoryModule own;
    own.Set("g", "k", "mine");
    GPreferences::UpdatePreferencesWith({{cDefaults, &own}, {cMine, &own}});
    EXPECT_EQ(Get(cDefaults, "g", "k") + Get(cMine, "g", "k"), "minemine");
    EXPECT_THROW(GPreferences::UpdatePreferencesWith({{cUser, &own}}), GException);
    EXPECT_THROW(GPreferences::SetPrefModule(cUser, nullptr, true), GException);
    GPreferences::SetPrefModule(cMine, &own, false);
    EXPECT_EQ(count, 1);
    GPreferences::RemovePrefModule(cMine);
    GPreferences::RemovePrefModule(cDefaults);
    EXPECT_EQ(count, 0);
}

TEST_F(GPreferencesTest, FilesAreInTheEncodingThatIsSet) {
    const std::string mark = "\xFF\xFE";
    const GEncoding* const utf8 = GUTF8Encoding::GetInstance();
    GPreferences::SetEncoding(GUnicodeEncoding::GetInstance());
    EXPECT_THROW(GPreferences::SetEncoding(nullptr), GException);
    Install(4);
    GPreferences::Set(cUser, "g", "k", "v");
    GPreferences::FlushPrefs();
    EXPECT_EQ(mFolder.Take("user/App.uprefs").substr(0, 2), mark);
    GPrefFileModule module(mFolder.Portable("user/App.uprefs"), utf8);
    module.Set("g", "l", "w");
    module.SaveAs(mFolder.Portable("copy"));
    EXPECT_EQ(mFolder.Take("copy").substr(0, 11), "#BEGINPREFS");
    EXPECT_EQ(TextOf(GPrefFileModule(mFolder.Portable("copy"), utf8).Get("g", "l")), "w");
    EXPECT_TRUE(module.IsDirty()) << "its own file is as it was";
    module.SetEncoding(GUnicodeEncoding::GetInstance());
    EXPECT_THROW(module.SetEncoding(nullptr), GException);
    module.SaveAs(mFolder.Portable("copy"));
    EXPECT_EQ(mFolder.Take("copy").substr(0, 2), mark);
}

TEST_F(GPreferencesTest, WhatIsReadOfADamagedFileIsKeptAndTheFileToo) {
    for (const bool shared : {false, true}) {
        SCOPED_TRACE(shared);
        const GPathName path = mFolder.Portable("d.uprefs");
        const std::string damaged = "#BEGINPREFS\n\"g\"\n#BEGINDICT\n\"k\" \"1\"\n\"l\" \"";
        mFolder.Put("d.uprefs", damaged);
        const GEncoding* const encoding = GUTF8Encoding::GetInstance();
        const auto module = shared ? std::make_unique<GPrefSharedFileModule>(path, encoding)
                                   : std::make_unique<GPrefFileModule>(path, encoding);
        EXPECT_EQ(TextOf(module->Get("g", "k")), "1");
        EXPECT_EQ(mFolder.Take("d.uprefs"), damaged);
        module->Set("g", "m", "2");
        module->FlushPrefs();
        EXPECT_EQ(mFolder.Take(shared ? "d (damaged 2).uprefs" : "d (damaged).uprefs"), damaged);
        GPrefFileModule read(path, encoding);
        EXPECT_EQ(TextOf(read.Get("g", "k")) + TextOf(read.Get("g", "m")), "12");
    }
}

TEST(GPrefModule, MemoryModulesBeginAndEndWithAText) {
    GPrefMemoryModule module("#BEGINPREFS\n\"g\"\n#BEGINDICT\n\"k\" \"1\"\n#ENDDICT\n#ENDPREFS\n");
    GPrefMemoryModule other;
    other.Set("g", "k", "2");
    other.Set("h", "k", "3");
    module.UpdateWith(&other);
    module.UpdateWith(&module);
    EXPECT_EQ(TextOf(module.Get("g", "k")) + TextOf(module.Get("h", "k")), "23");
    GString text;
    module.RemoveGroup("g");
    module.GetPrefsData(text);
    EXPECT_EQ(TextOf(text),
              "#BEGINPREFS\r\n\r\n\"h\"\r\n#BEGINDICT\r\n\"k\" \"3\"\r\n#ENDDICT\r\n\r\n#ENDPREFS\r\n");
    GPrefMemoryModule().GetPrefsData(text);
    EXPECT_EQ(TextOf(text), "#BEGINPREFS\r\n#ENDPREFS\r\n");
    GTable<GBuffer> names;
    module.GetGroupNames(names);
    EXPECT_TRUE(names == GTable<GBuffer>{"h"});
    module.GetGroupPreferences("h", names);
    EXPECT_TRUE(names == GTable<GBuffer>{"k"});
    module.SetDirty(true);
    EXPECT_TRUE(module.IsDirty());
}

}  // namespace
