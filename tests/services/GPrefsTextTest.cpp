#include "framework/services/GPrefsText.h"

#include "framework/services/GPrefsFile.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "tests/files/TestFolder.h"

namespace {

using Groups = GPrefsText::Groups;

/// Every group and value as "group.key=value;" in the order of the words, and "!" for a damaged text.
std::string Read(const std::string& text) {
    const GBuffer bytes(text.c_str());
    GMemoryInStream source(bytes);
    GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
    Groups groups;
    groups.GetOrInsert("old").Set("k", "v");
    std::string result = GPrefsText::Read(stream, groups) ? "" : "!";
    for (const char* const group : {"a", "b", "old"}) {
        if (!groups.Has(group)) continue;
        result += group + std::string(":");
        for (const char* const key : {"k", "l"})
            if (const GString* const value = groups.Find(group)->Find(key))
                result.append(key).append("=").append(TextOf(*value)).append(";");
    }
    return result;
}

TEST(GPrefsText, ReadsWhatIsWholeAndWhatStandsBeforeADamage) {
    const std::string a = "\"a\"\n#BEGINDICT\n\"k\" \"1\"\n#ENDDICT\n";
    const std::string b = "\n\"b\"\r\n#BEGINDICT\r\n\"k\" \"x\xC2\xA5\"\r\n\"l\" \"\"\r\n#ENDDICT\r\n";
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"two groups", "#BEGINPREFS\n" + a + b + "#ENDPREFS\n", "a:k=1;b:k=x\xC2\xA5;l=;"},
        {"no group", "#BEGINPREFS #ENDPREFS\n#ENDPREFS", ""},
        {"a beginning that is not the first line", "x\n\n #BEGINPREFS\n" + a + "#ENDPREFS", "a:k=1;"},
        {"one group twice",
         "#BEGINPREFS\n" + a + "\"a\"\n#BEGINDICT\n\"l\" \"2\"\n\"k\" \"3\"\n#ENDDICT\n#ENDPREFS",
         "a:k=3;l=2;"},
        {"nothing", "", "!"},
        {"no beginning", a + "#ENDPREFS", "!"},
        {"no end", "#BEGINPREFS\n" + a, "!a:k=1;"},
        {"another end", "#BEGINPREFS\n" + a + "#ENDPREF", "!a:k=1;"},
        {"a group that breaks off", "#BEGINPREFS\n" + a + "\"b\"\n#BEGINDICT\n\"k\" \"1\"\n\"l\"",
         "!a:k=1;b:k=1;"},
        {"a group without values", "#BEGINPREFS\n\"b\"\n\"k\" \"1\"\n#ENDPREFS", "!b:"},
        {"a word in between", "#BEGINPREFS\n" + a + "word\n" + b + "#ENDPREFS", "!a:k=1;"}};
    for (const auto& [what, text, expected] : rows) EXPECT_EQ(Read(text), expected) << what;
}

using GPrefsFileTest = FolderTest;

TEST_F(GPrefsFileTest, AWrittenFileTakesThePlaceOfTheOldOne) {
    const GPathName path = mFolder.Portable("new/p.uprefs");
    Groups groups;
    groups.GetOrInsert("a").Set("k", GString::FromUTF8("\xE4\xB8\x80\r\n\"\\\t"));
    const GEncoding* const encodings[] = {GUTF8Encoding::GetInstance(), GUnicodeEncoding::GetInstance()};
    for (const GEncoding* const encoding : encodings) {
        GPrefsFile::Write(path, encoding, groups);
        Groups read;
        EXPECT_TRUE(GPrefsFile::Read(path, GUTF8Encoding::GetInstance(), read)) << "whichever of the two";
        EXPECT_TRUE(read == groups);
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mFolder.Standard("new")), {}), 1);
    EXPECT_EQ(mFolder.Take("new/p.uprefs").substr(0, 4), std::string("\xFF\xFE#\0", 4));
    std::filesystem::create_directories(mFolder.Standard("in the way"));
    EXPECT_THROW(GPrefsFile::Write(mFolder.Portable("in the way"), encodings[0], groups), GException);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mFolder.Standard("")), {}), 2)
        << "nothing is left";
}

TEST_F(GPrefsFileTest, ADamagedOneIsSetAsideUnderAFreeName) {
    for (const char* const aside : {"p (damaged).uprefs", "p (damaged 2).uprefs", "p (damaged 3).uprefs"}) {
        mFolder.Put("p.uprefs", aside);
        EXPECT_EQ(TextOf(GPrefsFile::SetAside(mFolder.Portable("p.uprefs")).GetLeaf()), aside);
        EXPECT_FALSE(mFolder.Has("p.uprefs"));
        EXPECT_EQ(mFolder.Take(aside), aside);
    }
    const GBuffer large("#BEGINPREFS\n#ENDPREFS\n");
    GMemoryInStream stream(large);
    EXPECT_FALSE(GPrefsFile::Read(stream, GUTF8Encoding::GetInstance(), *std::make_unique<Groups>(), 21));
    stream.Reset();
    EXPECT_TRUE(GPrefsFile::Read(stream, GUTF8Encoding::GetInstance(), *std::make_unique<Groups>(), 22));
}

}  // namespace
