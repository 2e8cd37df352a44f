// The page of formats on files, against the files that the framework and the monitor make.
#include <set>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/services/GPrefFileModule.h"
#include "framework/services/GPreferences.h"
#include "framework/services/GPrefsFile.h"
#include "framework/services/GTrace.h"
#include "framework/services/GTraceFile.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "framework/streams/text/GDictTextSupport.h"
#include "monitor/spooling/JobFileRules.h"
#include "monitor/spooling/JobPath.h"
#include "tests/core/TextForTests.h"
#include "tests/files/TestFolder.h"
#include "tests/formats/FormatsPage.h"

namespace {

using Facts = FormatsPage::Facts;

/// A folder of its own in the place of the temporary folder and those of preferences.
struct FilesPage : testing::Test {
    FilesPage() {
        for (const long place :
             {GSpecialPath::cGlobalTemp, GSpecialPath::cUserPreferences, GSpecialPath::cGlobalPreferences})
            GFileSystem::AddSpecialPath(place, mFolder.Portable());
        GFileSystem::AddSpecialPath(GSpecialPath::cLibrary, GPathName("X:/MODULE.dll"));
    }
    ~FilesPage() override {
        GTrace::SetInstance(nullptr);
        GPreferences::Finalize();
        GFileSystem::RemoveAllSpecialPaths();
    }
    /// The names of the files in a folder.
    std::string Files(const std::string& folder) const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(mFolder.Standard(folder)))
            if (entry.is_regular_file()) names.insert(entry.path().filename().string());
        std::string text;
        for (const std::string& name : names) text += name + "; ";
        return text;
    }

    const TestFolder mFolder;
};

TEST_F(FilesPage, DictionaryText) {
    for (const auto& [written, read] : FormatsPage("Dictionary text").facts) {
        const std::string text = "#BEGINDICT\n\"k\" \"" + written + "\"\n#ENDDICT\n";
        const GBuffer bytes = BufferOf(text);
        GMemoryInStream source(bytes);
        GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
        GDict<GBuffer, GString> values;
        EXPECT_TRUE(GDictTextSupport::Read(stream, values)) << written;
        std::string units;
        const GString value = values.GetOrInsert("k");
        for (long i = 0; i < value.GetLength(); ++i) {
            char unit[8];
            std::snprintf(unit, sizeof unit, "%s%04X", i > 0 ? " " : "", value[i]);
            units += unit;
        }
        EXPECT_EQ(units, read) << written;
    }
}

TEST_F(FilesPage, JobFile) {
    const Facts page = FormatsPage("Job file").facts;
    const std::string longest(300, 'x');
    const Facts others = {
        {"longest name", std::to_string(JobPath("Proof", longest.c_str()).GetFileName().GetLength())},
        {"set aside", TextOf(JobFileRules::MakeSetAsideName("anna", 1, 0))}};
    EXPECT_EQ(page.size(), 8u);
    for (const auto& [name, fact] : page) {
        const auto other = others.find(name);
        EXPECT_EQ(fact, other != others.end() ? other->second
                                              : TextOf(JobPath("Proof", name.c_str()).GetFileName()))
            << name;
    }
}

/// Reading and writing it gives it back.
void ExpectIsPreferences(const std::string& text, const TestFolder& folder) {
    GPrefsText::Groups groups;
    folder.Put("read", text);
    EXPECT_TRUE(GPrefsFile::Read(folder.Portable("read"), GUTF8Encoding::GetInstance(), groups));
    GPrefsFile::Write(folder.Portable("written"), GUTF8Encoding::GetInstance(), groups);
    EXPECT_EQ(folder.Take("written").size(), text.size());
    for (const char* const file : {"read", "written"}) std::filesystem::remove(folder.Standard(file));
}

TEST_F(FilesPage, PreferenceFiles) {
    const FormatsPage page("Preference files");
    ASSERT_EQ(page.examples.size(), 1u);
    ExpectIsPreferences(page.examples[0], mFolder);
    GPreferences::SetDefaultModules("NAME", static_cast<GPreferences::PrefDefaultModule>(15));
    const auto nameOf = [](long id) {
        const auto* const module = dynamic_cast<GPrefFileModule*>(GPreferences::GetPrefModule(id));
        return TextOf(module->GetPathName().GetLeaf());
    };
    mFolder.Put("Quillon.uprefs", "damaged");
    GPreferences::Refresh();
    for (const long id : {-2L, -3L, -4L}) GPreferences::Set(id, "g", "k", 1L);
    GPreferences::FlushPrefs();
    const std::string lock = page.facts.at("lock of the shared file");
    const std::string damaged = page.facts.at("damaged file");
    const std::string user = nameOf(-3), system = nameOf(-4), shared = nameOf(-2);
    EXPECT_EQ(Files("."), system + "; " + user + "; " + damaged + "; " + shared + "; " + lock + "; ");
    GFileSystem::RemoveSpecialPath(GSpecialPath::cUserPreferences);
    const Facts expected = {
        {"folder", TextOf(GFileSystem::GetSpecialPath(GSpecialPath::cUserPreferences).GetLeaf())},
        {"user's file", user},
        {"system's file", system},
        {"shared file", shared},
        {"lock of the shared file", lock},
        {"damaged file", damaged},
        {"largest file", std::to_string(GPrefsFile::cMaxLength)},
        {"longest wait", std::to_string(GPrefSharedFileModule::cLongestWait)}};
    EXPECT_EQ(page.facts, expected);
}

/// What the settings are after a configuration has set that key of the defaults to that value.
std::string Settings(const std::string& key, const std::string& value) {
    const std::string text =
        "#BEGINPREFS\n\"Defaults\"\n#BEGINDICT\n\"" + key + "\" \"" + value + "\"\n#ENDDICT\n#ENDPREFS\n";
    const GBuffer bytes = BufferOf(text);
    GMemoryInStream stream(bytes);
    GTraceSettings settings;
    settings.Read(stream);
    std::string result;
    for (const char* const category : {"X", "XAS", "XDE"}) {
        result += settings.GetNeedsLogging(category) ? 'L' : '-';
        result += settings.GetAlertOnLog(category) ? 'A' : '-';
    }
    for (const bool flag : {settings.GetLogLocation(), settings.GetLogTime(), settings.GetAlwaysUseNewFile()})
        result += flag ? '1' : '0';
    return result + '"' + settings.GetIndent().GetPtr() + '"' + settings.GetPrefix().GetPtr() + '"';
}

TEST_F(FilesPage, TraceConfigurationAndLog) {
    const FormatsPage page("Trace configuration and log");
    ASSERT_EQ(page.examples.size(), 1u);
    ExpectIsPreferences(page.examples[0], mFolder);
    const std::string before = R"(------110" " *** ")";
    const Facts changed = {{"Log", R"(L-----110" " *** ")"},
                           {"LogAssert", R"(--L---110" " *** ")"},
                           {"LogDetail", R"(----L-110" " *** ")"},
                           {"AssertOnLog", R"(-A----110" " *** ")"},
                           {"AssertOnAssert", R"(---A--110" " *** ")"},
                           {"AssertOnDetail", R"(-----A110" " *** ")"},
                           {"Indent", R"(------110"i" *** ")"},
                           {"Prefix", R"(------110" "i")"},
                           {"LogLocation", R"(------010" " *** ")"},
                           {"LogTime", R"(------100" " *** ")"},
                           {"AlwaysUseNewFile", R"(------111" " *** ")"}};
    Facts facts = page.facts;
    for (const auto& [key, result] : changed) {
        const std::string cell = facts.at(key);
        const bool isText = cell.starts_with('"') && cell.ends_with('"');
        const std::string other = isText ? "i" : cell == "true" ? "false" : "true";
        EXPECT_EQ(Settings(key, isText ? cell.substr(1, cell.size() - 2) : cell), before) << key;
        EXPECT_EQ(Settings(key, other), result) << key;
        facts.erase(key);
    }
    EXPECT_EQ(facts.size(), 6u);
    EXPECT_EQ(facts.at("largest log"), std::to_string(GTraceFile::cMaxLength));
    const std::string folder = facts.at("folder") + "/";
    std::filesystem::create_directories(mFolder.Standard(folder));
    const auto log = [&](const std::string& setting) {
        mFolder.Put(folder + facts.at("configuration"),
                    "#BEGINPREFS\n\"Defaults\"\n#BEGINDICT\n\"Log\" \"1\"\n" + setting);
        GTrace::SetInstance(new GTrace());
        GTraceLog::Trace("X", "entry");
        GTrace::SetInstance(nullptr);
    };
    log("");
    std::filesystem::resize_file(mFolder.Standard(folder + facts.at("log")), GTraceFile::cMaxLength + 1);
    log("");
    log("\"AlwaysUseNewFile\" \"1\"\n");
    std::string expected;
    for (const char* const name : {"next log", "old log", "configuration", "log"})
        expected += facts.at(name) + "; ";
    EXPECT_EQ(Files(folder), expected);
}

}  // namespace
