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
}

TEST(GDictTextSupport, ReadsBackWhatItHasWritten) {
    Dict dict;
    for (const char* const text :
         {"", " ", "\"", "a\\", "\\n", "#ENDDICT", "a\tb", "\r\n", "a \"b\" c", "\u65E5\u672C"})
        dict.Set(GBuffer(dict.GetCount()), GString::FromUTF8(text));
    Dict read;
    EXPECT_TRUE(Read(Write(dict), read));
    EXPECT_EQ(Entries(read), Entries(dict));
}

TEST(GDictTextSupport, ReadsUpToTheLineThatEndsIt) {
    // Good and bad texts, with slashes for line ends, and the entries that are read.
    const std::tuple<bool, std::string_view, std::string_view> rows[] = {
        {true, "#BEGINDICT/#ENDDICT/", ""},
        {true, "#BEGINDICT/#ENDDICT", ""},
        {true, "#BEGINDICT/'a' '1'/'b' '2'/#ENDDICT/", "a=1;b=2;"},
        {true, " /\t#BEGINDICT / //  'a'\t '1'  /#ENDDICT/", "a=1;"},
        {true, "#BEGINDICT/'a''1'/#ENDDICT/", "a=1;"},
        {true, "#BEGINDICT/'a' '1' 'z' rest/'b' '2'/#ENDDICT/", "a=1;b=2;"},
        {true, "#BEGINDICT/'a' '1'/'a' '2'/#ENDDICT/", "a=2;"},
        {true, "#BEGINDICT/'a' '1'/#comment/'b' '2'/#ENDDICT/", "a=1;"},
        {true, "#BEGINDICT/'a' '1'/ # /'b' '2'/", "a=1;"},
        {false, "#BEGINDICT/'a' '1'/x#/#ENDDICT/", "a=1;"},
        {false, "", ""},
        {false, "#BEGINPREFS/'a' '1'/#ENDDICT/", ""},
        {false, "#begindict/#ENDDICT/", ""},
        {false, "#BEGINDICT/'a' '1'/", "a=1;"},
        {false, "#BEGINDICT", ""},
        {false, "#BEGINDICT/'a' '1'/'b'/#ENDDICT/", "a=1;"},
        {false, "#BEGINDICT/'b'/'2'/#ENDDICT/", ""},
        {false, "#BEGINDICT/'a' 1/#ENDDICT/", ""},
        {false, "#BEGINDICT/a '1'/#ENDDICT/", ""},
        {false, "#BEGINDICT/'a' '1/#ENDDICT/", ""},
        {false, "#BEGINDICT/'a' '1\\'/#ENDDICT/", ""},
        {false, "#BEGINDICT/'a' '1'/'b' '\xFF\xFE'/#ENDDICT/", "a=1;"},
        {false, "#BEGINDICT/'a' '1'//'b' '2'/#ENDDICT/", "a=1;"}};
    for (const char* const lineEnd : {"\r\n", "\n"}) {
        for (const auto& [good, text, entries] : rows) {
            SCOPED_TRACE(text);
            std::string bytes;
            for (const char c : text) bytes += c == '/' ? lineEnd : std::string(1, c == '\'' ? '"' : c);
            Dict dict;
            dict.Set("old", GString("value"));
            EXPECT_EQ(Read(bytes, dict), good);
            EXPECT_EQ(Entries(dict), entries);
        }
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
