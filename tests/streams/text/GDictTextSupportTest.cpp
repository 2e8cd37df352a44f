#include "framework/streams/text/GDictTextSupport.h"

#include <numeric>
#include <set>

#include "framework/streams/text/GBin2TextStream.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

using Dict = GDict<GBuffer, GString>;

std::string Write(const Dict& dict) {
    GString text("what was there before");
    GDictTextSupport::Write(dict, text);
    return TextOf(text);
}

/// What is read, and the line behind it when it is good.
bool Read(const std::string& text, Dict& dict, GString& next) {
    const GBuffer bytes = BufferOf(text);
    GMemoryInStream source(bytes);
    GBin2TextStream stream(source, GUTF8Encoding::GetInstance());
    const bool good = GDictTextSupport::Read(stream, dict);
    if (good) stream.ReadLine(next);
    return good;
}

/// The entries as "key=value;", in the order of the keys.
std::string Entries(const Dict& dict) {
    std::set<std::string> entries;
    for (const auto& entry : dict)
        entries.insert(BytesOf(entry.GetKey()) + "=" + TextOf(entry.GetValue()) + ";");
    return std::accumulate(entries.begin(), entries.end(), std::string());
}

TEST(GDictTextSupport, WritesLiteralBytesAndReadsThemBack) {
    Dict dict;
    EXPECT_EQ(Write(dict), "#BEGINDICT\r\n#ENDDICT\r\n");
    dict.Set("JobPath", GString::FromUTF8("C:\\jobs\\\"Q3\"\tr\xC3\xA9sum\xC3\xA9\r\n.ps"));
    EXPECT_EQ(Write(dict),
              "#BEGINDICT\r\n"
              "\"JobPath\" \"C:\\\\jobs\\\\\\\"Q3\\\"\\tr\xC3\xA9sum\xC3\xA9\\n.ps\"\r\n"
              "#ENDDICT\r\n");
    for (const char* const text : {"", " ", "a\\", "\\n", "#ENDDICT"})
        dict.Set(GBuffer(dict.GetCount()), GString(text));
    Dict read;
    GString next;
    EXPECT_TRUE(Read(Write(dict), read, next));
    EXPECT_EQ(Entries(read), Entries(dict));
}

// Slashes and apostrophes of a row stand for line ends and quotation marks.
std::string WithMarks(std::string_view row, const char* lineEnd) {
    std::string text;
    for (const char c : row) text += c == '/' ? lineEnd : std::string(1, c == '\'' ? '"' : c);
    return text;
}

TEST(GDictTextSupport, ReadsUpToTheLineThatEndsIt) {
    bool good = true;
    // A text, and the entries that are read, with the next line.
    const auto check = [&good](auto text, auto entries) {
        for (const char* const lineEnd : {"\r\n", "\n"}) {
            Dict dict;
            dict.Set("old", GString("value"));
            GString next;
            EXPECT_EQ(Read(WithMarks(text, lineEnd), dict, next), good);
            EXPECT_EQ(Entries(dict) + TextOf(next), WithMarks(entries, ""));
        }
    };
    ForEachRow<2>(
        {"#BEGINDICT/#ENDDICT/ -> ", "#BEGINDICT/#ENDDICT -> ",
         "#BEGINDICT/'a' '1'/'b' '2'/#ENDDICT/ -> a=1;b=2;",
         "#BEGINDICT/'a' '1'/#ENDDICT and more/next/ -> a=1;next",
         " /\t#BEGINDICT / //  'a'\t '1'  /#ENDDICT/ -> a=1;", "#BEGINDICT/'a''1'/#ENDDICT/ -> a=1;",
         "#BEGINDICT/'a' '1' 'z' rest/'b' '2'/#ENDDICT/ -> a=1;b=2;",
         "#BEGINDICT/'a' '1'/'a' '2'/#ENDDICT/ -> a=2;",
         "#BEGINDICT/'a' '1'/#comment/'b' '2'/#ENDDICT/ -> a=1;'b' '2'",
         "#BEGINDICT/'a' '1'/ # /b/ -> a=1;b"},
        check);
    good = false;
    ForEachRow<2>({"#BEGINDICT/'a' '1'/x#/#ENDDICT/ -> a=1;", " -> ", "#BEGINPREFS/'a' '1'/#ENDDICT/ -> ",
                   "#begindict/#ENDDICT/ -> ", "#BEGINDICT/'a' '1'/ -> a=1;", "#BEGINDICT -> ",
                   "#BEGINDICT/'a' '1'/'b'/#ENDDICT/ -> a=1;", "#BEGINDICT/'b'/'2'/#ENDDICT/ -> ",
                   "#BEGINDICT/'a' 1/#ENDDICT/ -> ", "#BEGINDICT/a '1'/#ENDDICT/ -> ",
                   "#BEGINDICT/'a' '1/#ENDDICT/ -> ", "#BEGINDICT/'a' '1\\'/#ENDDICT/ -> ",
                   "#BEGINDICT/'a' '1'/'b' '\xFF\xFE'/#ENDDICT/ -> a=1;",
                   "#BEGINDICT/'a' '1'//'b' '2'/#ENDDICT/ -> a=1;"},
                  check);
}

}  // namespace
