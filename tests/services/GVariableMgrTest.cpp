#include "framework/services/GVariableMgr.h"

#include "framework/core/text/GStringSupport.h"
#include "framework/files/GFileSystem.h"
#include "framework/services/GVariableSubstitution.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"

namespace {

/// Texts of the tests have '/' where a separator is meant.
GString Native(std::string text, unsigned short separator = PSystem::GetPathSeparator()) {
    for (char& character : text)
        if (character == '/') character = static_cast<char>(separator);
    return GString::FromUTF8(text.c_str());
}

struct Manager : GVariableMgr {
    explicit Manager(bool fileNameFriendly = false, VariableCategories categories = cAll)
        : GVariableMgr(fileNameFriendly, categories) {}

    using GVariableMgr::DeselectVar;
    using GVariableMgr::SelectVar;

    GDateTime GetDateTime() const override { return GDateTime(5, 7, 2014, 9, 30, 1, 1, 0, 0); }
    void GetUserName(GString& value) const override { value = "a:b"; }
    void GetUserCompany(GString& value) const override { value = ""; }
    void GetCurrentDocumentName(GString& value) const override { value = "%Date%"; }
    void GetDesktop(GString& value) const override { value = Native("C:/desk"); }
    void GetTemp(GString& value) const override { value = Native("T:/"); }
    bool GetCustomVariable(const GString& name, GString& value) const override {
        if (name == GString("%Custom%")) value = "c:d";
        return name == GString("%Custom%");
    }
};

std::string Expand(const GVariableMgr& manager, const std::string& text) {
    GString out("left over");
    const bool succeeded = manager.ExpandVars(Native(text), out);
    EXPECT_TRUE(succeeded || out.IsEmpty());
    return succeeded ? TextOf(out) : "failed";
}

TEST(GVariableMgr, ExpandsWhatItKnowsAndNothingHalf) {
    ForEachRow<2>({" -> ", "plain -> plain", "100%% -> 100%", "%%%% -> %%", "%Date% -> 2014-07-05",
                   "x%Date%y -> x2014-07-05y", "%Date -> failed", "%Date%% -> failed", "% -> failed",
                   "%Nope% -> failed", "%date% -> failed", "a%Date%%Nope% -> failed",
                   // A folder is followed by one separator.
                   "%Desktop%/Jobs -> C:/desk/Jobs", "%Desktop%Jobs -> C:/desk/Jobs",
                   "%Desktop%//Jobs -> C:/desk//Jobs", "%Desktop% -> C:/desk/",
                   "%Temp%%Date% -> T:/2014-07-05", "%Temp%/x -> T:/x", "%Current Document Name% -> %Date%",
                   "%User Company% -> ", "%User Name%%Custom% -> a:bc:d"},
                  [manager = Manager()](auto text, auto expected) {
                      const std::string wanted(expected);
                      EXPECT_EQ(Expand(manager, std::string(text)),
                                wanted == "failed" ? wanted : TextOf(Native(wanted)));
                  });
}

TEST(GVariableMgr, PlainValuesAreMadeFitForFileNames) {
    const Manager manager(true);
    EXPECT_EQ(Expand(manager, "%User Name%"), "a_b");
    EXPECT_EQ(Expand(manager, "%Desktop%"), TextOf(Native("C:/desk/")));
    EXPECT_EQ(Expand(manager, "%Custom%"), "c:d");
    EXPECT_EQ(Expand(manager, "%Time%").find_first_of("<>:\"/\\|?*"), std::string::npos);
    EXPECT_NE(Expand(Manager(), "%Time%").find(':'), std::string::npos);
}

TEST(GVariableMgr, KnowsWhatIsSelected) {
    const std::tuple<GVariableMgr::VariableCategories, long, bool, bool> rows[] = {
        {GVariableMgr::cPlain, 6, true, false},
        {GVariableMgr::cPaths, 5, false, true},
        {GVariableMgr::cAll, 11, true, true},
        {static_cast<GVariableMgr::VariableCategories>(4), 0, false, false}};
    Manager manager;
    for (const auto& [categories, count, plain, path] : rows) {
        manager.SelectVars(categories);
        GTable<GString> names;
        GDict<GString, GString> values;
        manager.GetVars(names);
        manager.GetVars(values);
        EXPECT_TRUE(names.GetCount() == count && values.GetCount() == count);
        GString value;
        EXPECT_EQ(manager.GetVar("%Date%", value), plain);
        EXPECT_EQ(TextOf(value), plain ? "2014-07-05" : "%Date%");
        EXPECT_EQ(manager.GetVar("%Desktop%", value), path);
        EXPECT_EQ(manager.IsPathVar("%Desktop%"), path);
        EXPECT_FALSE(manager.IsPathVar("%Date%"));
    }
    manager.SelectVar(GVariableMgr::cDate);
    EXPECT_EQ(Expand(manager, "%Date%"), "2014-07-05");
    manager.DeselectVar(GVariableMgr::cDate);
    EXPECT_EQ(Expand(manager, "%Date%"), "failed");
    GTable<GString> names = {"old"};
    manager.ExtractVars("a%Date%%%b%Nope%%Date%c%", names);
    EXPECT_TRUE(names == (GTable<GString>{"%Date%", "%Nope%", "%Date%"}));
}

TEST(GVariableMgr, ItsOwnFoldersAreTheSystems) {
    const GVariableMgr manager(false, GVariableMgr::cPaths);
    const std::pair<const char*, GPathName> rows[] = {
        {"%Desktop%", GFileSystem::GetDesktopFolder()},
        {"%My Documents%", GFileSystem::GetUserDocumentsFolder()},
        {"%Program Files%", GFileSystem::GetApplicationsFolder()},
        {"%Temp%", GFileSystem::GetGlobalTempFolder()},
        {"%System Disk%", GFileSystem::GetGlobalSystemFolder().GetRootPath()}};
    for (const auto& [name, folder] : rows) {
        GString value;
        EXPECT_TRUE(manager.GetVar(name, value) && !value.IsEmpty());
        EXPECT_EQ(TextOf(value), TextOf(folder.GetNativePathString())) << name;
    }
}

TEST(GVariableSubstitution, PutsVariablesForFoldersAndBack) {
    using Imp = GVariableSubstitutionImp;
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalPreferenceRoot, GPathName("C:/all"));
    GFileSystem::AddSpecialPath(GSpecialPath::cUserPreferenceRoot, GPathName("C:/all/user"));
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, GPathName("T:/temp/"));
    GFileSystem::AddSpecialPath(GSpecialPath::cResources, GPathName());
    // The folders that are looked for, a path, and what is put for it.
    ForEachRow<3>(
        {"7 -> C:/all/x -> %QuillonGlobalPreferences%/x", "7 -> c:/ALL/User/x -> %QuillonUserPreferences%/x",
         "1 -> C:/all/user/x -> %QuillonGlobalPreferences%/user/x", "7 -> C:/allx -> C:/allx",
         "7 -> C:/all -> %QuillonGlobalPreferences%", "7 -> D:/C:/all/x -> D:/C:/all/x",
         "7 -> T:/temp/a -> %SystemGlobalTemp%/a", "3 -> T:/temp/a -> T:/temp/a", "4096 ->  -> "},
        [](auto flags, auto path, auto stored) {
            const Imp substitution(static_cast<Imp::PathNameTypes>(std::atoi(flags.data())));
            const GString whole = Native(std::string(path), '\\');
            GString text(whole);
            substitution.ToVariables(text);
            EXPECT_EQ(TextOf(text), TextOf(Native(std::string(stored), '\\')));
            substitution.FromVariables(text);
            EXPECT_TRUE(GStringSupport::IsEqualIgnoreCase(text, whole));
        });
    const Imp all(static_cast<Imp::PathNameTypes>(4103));
    GString text("%QuillonResourceFolder%");
    all.FromVariables(text);
    EXPECT_EQ(TextOf(text), "%QuillonResourceFolder%") << "not known";
    EXPECT_TRUE(all.WillProcessStringTypes(static_cast<Imp::StringType>(3)));
    EXPECT_FALSE(all.WillProcessStringTypes(static_cast<Imp::StringType>(2)));
    GFileSystem::RemoveAllSpecialPaths();
}

}  // namespace
