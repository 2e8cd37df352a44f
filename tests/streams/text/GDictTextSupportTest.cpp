#include "framework/streams/text/GDictTextSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>

#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/text/GBin2TextStream.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

using Dict = GDict<GBuffer, GString>;

std::string Write(const Dict& dict) {
    GString text("what was there before");
    GDictTextSupport::Write(dict, text);
    return UTF8Of(text);
}

bool Read(const std::string& text, Dict& dict) {
    const GBuffer bytes = BufferOf(text);
    GMemoryInStream source(bytes);
    GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
    return GDictTextSupport::Read(stream, dict);
}

/// The entries as "key=value;", in the order of the keys.
std::string Entries(const Dict& dict) {
    std::map<std::string, std::string> sorted;
    for (const auto& entry : dict) {
        sorted[BytesOf(entry.GetKey())] = UTF8Of(entry.GetValue());
    }
    std::string result;
    for (const auto& [key, value] : sorted) result += key + "=" + value + ";";
    return result;
}

TEST(GDictTextSupport, WritesLiteralBytes) {
    Dict dict;
    EXPECT_EQ(Write(dict), "#BEGINDICT\r\n#ENDDICT\r\n");
    dict.Set("JobPath", GString::FromUTF8("C:\\jobs\\\"Q3\"\tr\xC3\xA9sum\xC3\xA9\r\n.ps"));
    EXPECT_EQ(Write(dict),
              "#BEGINDICT\r\n"
              "\"JobPath\" \"C:\\\\jobs\\\\\\\"Q3\\\"\\tr\xC3\xA9sum\xC3\xA9\\n.ps\"\r\n"
              "#ENDDICT\r\n");
    dict.Clear();
    dict.Set("", GString(""));
    EXPECT_EQ(Write(dict), "#BEGINDICT\r\n\"\" \"\"\r\n#ENDDICT\r\n");
}

TEST(GDictTextSupport, ReadsBackWhatItHasWritten) {
    const char* const values[] = {"",       " ",   "\"",        "\\",       "\\n",         "a\\",
                                  "\\\"",   "#x",  "a\tb",      "a\r\nb",   "\r\n",        "'",
                                  "\u20AC", "x y", "a \"b\" c", "#ENDDICT", "\u65E5\u672C"};
    for (const char* value : values) {
        SCOPED_TRACE(value);
        Dict dict;
        dict.Set("Key", GString::FromUTF8(value));
        dict.Set("Other", GString("1"));
        Dict read;
        EXPECT_TRUE(Read(Write(dict), read));
        EXPECT_EQ(Entries(read), Entries(dict));
    }
}

TEST(GDictTextSupport, ReadsUpToTheLineThatEndsIt) {
    const std::tuple<const char*, const char*, bool, const char*> rows[] = {
        {"empty", "#BEGINDICT\r\n#ENDDICT\r\n", true, ""},
        {"without a last line end", "#BEGINDICT\n#ENDDICT", true, ""},
        {"entries", "#BEGINDICT\r\n\"a\" \"1\"\r\n\"b\" \"2\"\r\n#ENDDICT\r\n", true, "a=1;b=2;"},
        {"line feeds only", "#BEGINDICT\n\"a\" \"1\"\n#ENDDICT\n", true, "a=1;"},
        {"blanks and empty lines before the text and the first entry",
         " \r\n\t#BEGINDICT \r\n \r\n\r\n  \"a\"\t \"1\"  \r\n#ENDDICT\r\n", true, "a=1;"},
        {"no blank between key and value", "#BEGINDICT\r\n\"a\"\"1\"\r\n#ENDDICT\r\n", true, "a=1;"},
        {"more behind a value", "#BEGINDICT\r\n\"a\" \"1\" \"z\" rest\r\n\"b\" \"2\"\r\n#ENDDICT\r\n", true,
         "a=1;b=2;"},
        {"a key again", "#BEGINDICT\r\n\"a\" \"1\"\r\n\"a\" \"2\"\r\n#ENDDICT\r\n", true, "a=2;"},
        {"any line that begins with a number sign ends it",
         "#BEGINDICT\r\n\"a\" \"1\"\r\n#comment\r\n\"b\" \"2\"\r\n#ENDDICT\r\n", true, "a=1;"},
        {"a number sign alone", "#BEGINDICT\r\n\"a\" \"1\"\r\n # \r\n\"b\" \"2\"\r\n", true, "a=1;"},
        {"a word before the number sign", "#BEGINDICT\r\n\"a\" \"1\"\r\nx#\r\n#ENDDICT\r\n", false, "a=1;"},
        {"nothing", "", false, ""},
        {"another beginning", "#BEGINPREFS\r\n\"a\" \"1\"\r\n#ENDDICT\r\n", false, ""},
        {"the beginning in other letters", "#begindict\r\n#ENDDICT\r\n", false, ""},
        {"no end", "#BEGINDICT\r\n\"a\" \"1\"\r\n", false, "a=1;"},
        {"nothing but a beginning", "#BEGINDICT", false, ""},
        {"a key without a value", "#BEGINDICT\r\n\"a\" \"1\"\r\n\"b\"\r\n#ENDDICT\r\n", false, "a=1;"},
        {"the value on the next line", "#BEGINDICT\r\n\"b\"\r\n\"2\"\r\n#ENDDICT\r\n", false, ""},
        {"a value without quotes", "#BEGINDICT\r\n\"a\" 1\r\n#ENDDICT\r\n", false, ""},
        {"a key without quotes", "#BEGINDICT\r\na \"1\"\r\n#ENDDICT\r\n", false, ""},
        {"a value that does not end", "#BEGINDICT\r\n\"a\" \"1\r\n#ENDDICT\r\n", false, ""},
        {"a value that ends in an escaped quote", "#BEGINDICT\r\n\"a\" \"1\\\"\r\n#ENDDICT\r\n", false, ""},
        {"bytes that are no text", "#BEGINDICT\r\n\"a\" \"1\"\r\n\"b\" \"\xFF\xFE\"\r\n#ENDDICT\r\n", false,
         "a=1;"},
        {"an empty line between entries", "#BEGINDICT\r\n\"a\" \"1\"\r\n\r\n\"b\" \"2\"\r\n#ENDDICT\r\n",
         false, "a=1;"},
    };
    for (const auto& [what, text, good, entries] : rows) {
        SCOPED_TRACE(what);
        Dict dict;
        dict.Set("old", GString("value"));
        EXPECT_EQ(Read(text, dict), good);
        EXPECT_EQ(Entries(dict), entries);
    }
}

TEST(GDictTextSupport, LeavesTheStreamBehindTheLineThatEndsIt) {
    const GBuffer bytes("#BEGINDICT\r\n\"a\" \"1\"\r\n#ENDDICT and more\r\nnext\r\n");
    GMemoryInStream source(bytes);
    GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
    Dict dict;
    EXPECT_TRUE(GDictTextSupport::Read(stream, dict));
    GString line;
    EXPECT_TRUE(stream.ReadLine(line));
    EXPECT_EQ(UTF8Of(line), "next");
}

/// However short the text is cut, reading ends without an entry that was never written.
TEST(GDictTextSupport, SurvivesEveryTruncation) {
    const std::string whole = "#BEGINDICT\r\n\"a\" \"1\\\"\\\\\"\r\n\"b\" \"\xE2\x82\xAC\"\r\n#ENDDICT\r\n";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        Dict dict;
        const bool good = Read(whole.substr(0, length), dict);
        EXPECT_EQ(good, length > whole.find("#ENDDICT"));
        for (const auto& entry : dict) {
            const std::string value = UTF8Of(entry.GetValue());
            EXPECT_TRUE(value == "1\"\\" || value == "\xE2\x82\xAC") << value;
        }
    }
}

}  // namespace
