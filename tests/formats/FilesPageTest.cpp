// The page of formats on files, against the files that the framework and the monitor make.
#include <set>
#include <sstream>

#include "framework/files/GFileSystem.h"
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
#include "tests/files/TestFolder.h"
#include "tests/formats/FormatsPage.h"

namespace {

using Facts = FormatsPage::Facts;
using Names = std::set<std::string>;

/// A folder of its own in the place of the temporary folder and those of preferences.
struct FilesPage : FolderTest {
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
    Names Files(const std::string& folder) const {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(mFolder.Standard(folder)))
            if (entry.is_regular_file()) names.insert(entry.path().filename().string());
        return names;
    }
};

TEST_F(FilesPage, DictionaryText) {
    for (const auto& [written, read] : FormatsPage("Dictionary text").facts) {
        const std::string text = "#BEGINDICT\n\"k\" \"" + written + "\"\n#ENDDICT\n";
        const GBuffer bytes = BufferOf(text);
        GMemoryInStream source(bytes);
        GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
        GDict<GBuffer, GString> values;
        EXPECT_TRUE(GDictTextSupport::Read(stream, values)) << written;
        std::u16string units;
        std::istringstream numbers(read);
        for (unsigned unit = 0; numbers >> std::hex >> unit;) units += static_cast<char16_t>(unit);
        EXPECT_TRUE(numbers.eof()) << read;
        EXPECT_EQ(Plain(values.GetOrInsert("k")), units) << written;
    }
}

TEST_F(FilesPage, JobFile) {
    const Facts page = FormatsPage("Job file").facts;
    const std::string longest(300, 'x');
    Facts expected = {
        {"longest name", std::to_string(JobPath("Proof", longest.c_str()).GetFileName().GetLength())},
        {"set aside", TextOf(JobFileRules::MakeSetAsideName("anna", 1, 0))}};
    EXPECT_EQ(page.size(), 8u);
    // All others are titles.
    for (const auto& [title, file] : page)
        expected.try_emplace(title, TextOf(JobPath("Proof", title.c_str()).GetFileName()));
    EXPECT_EQ(page, expected);
}

/// What is written of the preferences that were read from a text.
std::string Rewritten(const std::string& text) {
    const TestFolder folder;
    GPrefsText::Groups groups;
    folder.Put("read", text);
    EXPECT_TRUE(GPrefsFile::Read(folder.Portable("read"), GUTF8Encoding::GetInstance(), groups));
    GPrefsFile::Write(folder.Portable("written"), GUTF8Encoding::GetInstance(), groups);
    return folder.Take("written");
}

TEST_F(FilesPage, PreferenceFiles) {
    const FormatsPage page("Preference files");
    ASSERT_EQ(page.examples.size(), 2u);
    EXPECT_EQ(Rewritten(page.examples[0]), page.examples[0]);
    for (const char* const mark : {"", "\xEF\xBB\xBF"})
        EXPECT_EQ(Rewritten(mark + page.examples[1]), page.examples[0]);
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
    EXPECT_EQ(Files("."), Names({system, user, damaged, shared, lock}));
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

/// What the settings are after a configuration has set that key of the defaults to that value. A line before
/// it makes it that long.
std::string Settings(const std::string& key, const std::string& value, std::size_t length = 0) {
    std::string text =
        "#BEGINPREFS\n\"Defaults\"\n#BEGINDICT\n\"" + key + "\" \"" + value + "\"\n#ENDDICT\n#ENDPREFS\n";
    if (length > text.size()) text.insert(0, std::string(length - text.size() - 1, 'x') + '\n');
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

TEST_F(FilesPage, TraceConfiguration) {
    FormatsPage page("Trace configuration and log");
    ASSERT_EQ(page.examples.size(), 1u);
    EXPECT_EQ(Rewritten(page.examples[0]).size(), page.examples[0].size()) << "its groups in another order";
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
    for (const auto& [key, result] : changed) {
        const std::string cell = page.facts.at(key);
        const bool isText = cell.starts_with('"') && cell.ends_with('"');
        EXPECT_TRUE(isText || cell == "true" || cell == "false") << cell;
        EXPECT_EQ(Settings(key, isText ? cell.substr(1, cell.size() - 2) : cell), before) << key;
        EXPECT_EQ(Settings(key, isText ? "i" : cell == "true" ? "false" : "true"), result) << key;
        page.facts.erase(key);
    }
    EXPECT_EQ(page.facts.size(), 7u) << "what the next test looks at";
    constexpr std::size_t cLargest = 1048576;
    EXPECT_EQ(page.facts.at("largest configuration"), std::to_string(cLargest));
    EXPECT_EQ(Settings("Log", "true", cLargest), changed.at("Log"));
    EXPECT_EQ(Settings("Log", "true", cLargest + 1), before);
}

TEST_F(FilesPage, TraceLog) {
    const Facts facts = FormatsPage("Trace configuration and log").facts;
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
    EXPECT_EQ(Files(folder),
              Names({facts.at("next log"), facts.at("old log"), facts.at("configuration"), facts.at("log")}));
}

}  // namespace
