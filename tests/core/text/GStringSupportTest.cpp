#include "framework/core/text/GStringSupport.h"

#include "tests/core/encodings/EncodingForTests.h"

TEST(GStringSupport, NaturalOrder) {
    // By value, leading zeros do not count, other digits are letters, rests by their low bytes first; and
    // a circle: only Latin texts are sorted by it.
    ForEachRow<2>(
        {u"page 9 of 10 -> page 10 of 2", u"a007b -> a7c", u"7 -> 7a", u"a1 -> ab", u"a -> a1",
         u"1\u0100 -> 1\u00FF", u"n2147483646 -> n2147483647", u"9 -> \u0661",
         u"abcdefghijklmnopqrst 9 -> abcdefghijklmnopqrst 10", u"9 -> 10", u"10 -> \u0432", u"\u0432 -> 9"},
        [&](auto less, auto more) {
            EXPECT_TRUE(GStringSupport::IsLessThanAlphanumeric(Text(less), Text(more)));
            EXPECT_FALSE(GStringSupport::IsLessThanAlphanumeric(Text(more), Text(less)));
        });
    std::u16string deep;  // needs no deep stack
    for (int i = 0; i < 1000000; ++i) deep += u"7.";
    EXPECT_TRUE(GStringSupport::IsLessThanAlphanumeric(Text(deep + u"9"), Text(deep + u"10")));
    // Numbers beyond 32 bits count as the largest.
    ForEachRow<2>({u" -> ", u"a007 -> a7", u"n2147483647 -> n99999999999999999999"}, [&](auto a, auto b) {
        EXPECT_FALSE(GStringSupport::IsLessThanAlphanumeric(Text(a), Text(b)));
        EXPECT_FALSE(GStringSupport::IsLessThanAlphanumeric(Text(b), Text(a)));
    });
}

TEST(GStringSupport, ComparesForTheUserAndIgnoringCase) {
    const std::tuple<GString, GString, long, long> rows[] = {
        {GString("abc"), Text(u"abc"), 0, 0},   {GString("abc"), Text(u"abd"), -1, -1},
        {GString("abd"), GString("abc"), 1, 1}, {GString("ab"), GString("abc"), -1, -1},
        {GString("ABC"), Text(u"abc"), 2, 0},   {Text(u"\u00C4\u0416"), Text(u"\u00E4\u0436"), 2, 0},
        {GString(), GString(""), 0, 0},         {GString(), GString("a"), -1, -1}};
    for (const auto& [a, b, order, ignoringCase] : rows) {
        SCOPED_TRACE(testing::PrintToString(Plain(a)));
        // How the cases of a letter are ordered is the user's.
        const long userOrder = GStringSupport::Compare(a, b, true);
        EXPECT_TRUE(order == 2 ? userOrder != 0 : userOrder == order);
        EXPECT_EQ(GStringSupport::Compare(a, b, false), ignoringCase);
        EXPECT_EQ(GStringSupport::IsEqualIgnoreCase(a, b), ignoringCase == 0);
    }
}

TEST(GStringSupport, IncreasesNumericSuffixes) {
    // A text, its greatest length (0: any), and the next text.
    ForEachRow<3>(
        {u"Report -> 0 -> Report (2)", u"Report (2) -> 0 -> Report (3)", u"Report (9) -> 0 -> Report (10)",
         u"Report (x) -> 0 -> Report (x) (2)", u"Report (02) -> 0 -> Report (02) (2)",
         u"Report () -> 0 -> Report () (2)", u"Report ((2) -> 0 -> Report ((3)", u"(2) -> 0 -> (2) (2)",
         u"a(2) -> 0 -> a(3)", u" -> 0 ->  (2)", u"Report (2147483647) -> 0 -> Report (2147483648)",
         u"Report (9223372036854775807) -> 0 -> Report (9223372036854775807) (2)",
         // Cut in front of the suffix.
         u"Report -> 3 ->  (2)", u"Report (9) -> 8 -> Repo(10)", u"Report -> 9 -> Repor (2)",
         u"Report (9) -> 10 -> Report(10)", u"a -> 4294967295 -> a (2)", u"ab\xD83D\xDE00z -> 7 -> ab (2)",
         u"ab\xD83D\xDE00(9) -> 7 -> ab(10)", u"a\xD83D\xDE00xyz -> 7 -> a\xD83D\xDE00 (2)",
         u"ab\xD83Dxyz -> 7 -> ab\xD83D (2)"},
        [](auto before, auto maxLength, auto after) {
            GString text = Text(before);
            GStringSupport::IncreaseNumericSuffix(text, Text(maxLength).GetUInt32());
            EXPECT_EQ(Plain(text), after);
        });
}

TEST(GStringSupport, StripsWhiteSpace) {
    for (const std::u16string_view row : {u" \t\b\v\r\na b \n|a b \n| \t\b\v\r\na b", u"\f a|\f a|\f a",
                                          u"\u00A0a|\u00A0a|\u00A0a", u"  ||", u"||"}) {
        const auto [before, leading, trailing] = CellsOf<3>(row, u"|");
        GString text = Text(before);
        EXPECT_EQ(Plain(GStringSupport::StripLeadingWhiteSpace(text)), leading);
        text = Text(before);
        EXPECT_EQ(Plain(GStringSupport::StripTrailingWhiteSpace(text)), trailing);
    }
}

// What is escaped is the buffer's.
TEST(GStringSupport, EscapesAndQuotes) {
    GString text("\r\n\tC:\\ \"it's\"");
    GStringSupport::QuoteString(text);
    EXPECT_TRUE(text == GString("\"\\n\\tC:\\\\ \\\"it's\\\"\""));
    // The character is a byte, whose sign counts in a unit.
    GEncoding::SetDefaultCharacter(static_cast<char>(0xA5));
    text.Set("a\r\nb\n\rc\nd\n\n\re");
    GStringSupport::ReplaceSpecialEndCharsWithDefaultChar(text);
    GEncoding::SetDefaultCharacter('@');
    EXPECT_EQ(Plain(text), u"a\uFFA5b\uFFA5c\uFFA5d\uFFA5\uFFA5e");
}

TEST(GStringSupport, SplitsAtWholeSeparators) {
    const auto split = [](const GString& text, const GString& separator, bool keepsEmpty) {
        GTable<GString> out{GString("old")};
        GStringSupport::SeparatedStringToStringTable(text, separator, out, keepsEmpty);
        std::u16string shown;
        for (const GString& field : out) shown += Plain(field) + u";";
        return shown;
    };
    // A text, the separator, its fields, and those that are not empty.
    ForEachRow<4>(
        {u"a,,b, -> , -> a;;b;; -> a;b;", u",a -> , -> ;a; -> a;", u" -> , -> ; -> ",
         u"a, b,c -> ,  -> a;b,c; -> a;b,c;", u"aaa -> aa -> ;a; -> a;", u"abc ->  -> abc; -> abc;"},
        [&](auto text, auto separator, auto kept, auto dropped) {
            EXPECT_EQ(split(Text(text), Text(separator), true), kept);
            EXPECT_EQ(split(Text(text), Text(separator), false), dropped);
        });
    EXPECT_EQ(split(GString("abc"), GString::FromUTF8("\xFF"), true), u"abc;") << "bytes, but no text";
    GTable<GString> own{GString("a;b")};
    GStringSupport::SeparatedStringToStringTable(own[0], GString(";"), own, true);
    EXPECT_TRUE(own == (GTable<GString>{"a", "b"})) << "the text may stand in the table";
}

TEST(GStringSupport, JoinsWithSeparatorsAndReplacesInOrder) {
    GString out("old");
    GStringSupport::StringTableToSeparatedString({}, GString(","), out);
    EXPECT_TRUE(out.IsEmpty());
    GStringSupport::StringTableToSeparatedString({GString("a"), GString(), GString("b")}, GString(", "), out);
    EXPECT_TRUE(out == GString("a, , b"));
    GStringSupport::SearchAndReplace(
        out, {{GString("a"), GString("b")}, {GString("b"), GString("c")}, {GString(""), GString("x")}});
    EXPECT_TRUE(out == GString("c, , c"));
}

TEST(GStringSupport, ChoosesAnEncoding) {
    const GEncoding *ascii = ASCII(), *winAnsi = WinAnsi(), *macRoman = MacRoman(), *utf8 = UTF8();
    const GTable<const GEncoding*> forText{ascii, winAnsi}, forBytes{ascii, utf8, winAnsi, macRoman};
    const GTable<const GEncoding*> apple{nullptr, macRoman, winAnsi}, plain{ascii}, none;
    const std::tuple<GTable<const GEncoding*>, const char16_t*, const char*, const GEncoding*> texts[] = {
        {forText, u"abc", "abc", ascii},
        {forText, u"\u20AC", "\x80", winAnsi},
        {forText, u"\u4E00", "\xE4\xB8\x80", utf8},
        {apple, u"\u00E4", "\x8A", macRoman},
        {plain, u"\u00E4", "\xC3\xA4", utf8},
        {none, u"a", "a", utf8}};
    for (const auto& [candidates, text, bytes, encoding] : texts) {
        GBuffer out;
        EXPECT_EQ(GStringSupport::GetBuffer(Text(text), out, candidates), encoding) << bytes;
        EXPECT_EQ(out, bytes);
        EXPECT_TRUE(!(candidates == forText) || GStringSupport::GetBuffer(Text(text), out) == encoding);
    }
    const std::tuple<GTable<const GEncoding*>, const char*, const char16_t*, const GEncoding*> buffers[] = {
        {forBytes, "", u"", ascii},
        {forBytes, "abc", u"abc", ascii},
        {forBytes, "\xC3\xA4", u"\u00E4", utf8},
        {forBytes, "\xE4", u"\u00E4", winAnsi},
        {forBytes, "\xE4\x81", u"\u2030\u00C5", macRoman},  // a code that WinAnsi lacks
        {forBytes, "\x81\xF0", u"\u00C5@", macRoman},       // none fits: the last
        {apple, "\xE4", u"\u2030", macRoman},
        {none, "abc", u"", nullptr}};
    for (const auto& [candidates, bytes, units, encoding] : buffers) {
        GString text("old");
        EXPECT_EQ(GStringSupport::AssignEncoding(GBuffer(bytes), text, candidates), encoding) << bytes;
        EXPECT_EQ(text.GetEncoding(), encoding);
        EXPECT_EQ(Plain(text), units);
        EXPECT_TRUE(!(candidates == forBytes) ||
                    GStringSupport::AssignEncoding(GBuffer(bytes), text) == encoding);
    }
}

TEST(GStringSupport, EmailAddresses) {
    const std::u16string label63(63, u'a');
    const std::u16string domain = label63 + u"." + label63 + u"." + label63 + u"." + std::u16string(61, u'a');
    const std::u16string local64(64, u'x');
    for (const std::u16string& possible :
         {u"a@b.de"s, u"first.last+tag@mail.example.com"s, u"o'neil@example.co.uk"s, u"a@x-y.com"s,
          u"a@1.2.com"s, u"j\u00FCrgen@b\u00FCcher.de"s, local64 + u"@example.com", u"a@" + label63 + u".com",
          u"a@" + domain})
        EXPECT_TRUE(GStringSupport::IsPossibleEmailAddress(Text(possible))) << Readable(possible);
    for (const std::u16string& impossible :
         {u""s, u"@"s, u"a"s, u"@b.de"s, u"a@"s, u"a@b"s, u"a@b@c.de"s, u"a b@c.de"s, u".a@b.de"s,
          u"a.@b.de"s, u"a..b@c.de"s, u"a@.de"s, u"a@b."s, u"a@b..de"s, u"a@-b.de"s, u"a@b-.de"s,
          u"a@b_c.de"s, u"a@127.0.0.1"s,
          // Not from the alphabets, or too long.
          u"a@b.de "s, u"\"a\"@b.de"s, u"a@b\u3002de"s, u"a\0@b.de"s, u"\xD83D@b.de"s,
          local64 + u"x@example.com", u"a@" + label63 + u"a.com", u"a@" + domain + u"a"})
        EXPECT_FALSE(GStringSupport::IsPossibleEmailAddress(Text(impossible))) << Readable(impossible);
}

TEST(GStringSupport, UnicodeRangesRiseAndDoNotOverlap) {
    const auto range = [](int specifier) {
        return GStringSupport::GetUnicodeRange(static_cast<GStringSupport::RangeSpecifier>(specifier));
    };
    long last = -1;
    for (int i = GStringSupport::cBasicLatin; i <= GStringSupport::cHalfwidthAndFullwidthForms; ++i) {
        EXPECT_GT(range(i).GetFirst(), last) << i;
        EXPECT_FALSE(range(i).IsEmpty()) << i;
        last = range(i).GetLast();
    }
    EXPECT_TRUE(range(GStringSupport::cCyrillic) == GRange(0x400, 0x4FF));
    EXPECT_TRUE(range(GStringSupport::cHalfwidthAndFullwidthForms) == GRange(0xFF00, 0xFFEF));
    EXPECT_TRUE(range(31).IsEmpty());
}

TEST(GStringSupport, ScramblingCanBeUndoneAndIsTheSameEverywhere) {
    for (const std::u16string_view units : {u""sv, u"p"sv, u"secret"sv, u"\0\uFFFF\xD83D e\u0301"sv}) {
        GString text;
        for (const char16_t unit : units) text += static_cast<unsigned short>(unit);
        GStringSupport::Scramble(text);
        EXPECT_EQ(text.IsEmpty(), units.empty());
        EXPECT_EQ(text.Find(GString("secret")), -1);
        for (long i = 0; i < text.GetLength(); ++i) EXPECT_TRUE(text[i] > ' ' && text[i] < 0x7F);
        EXPECT_TRUE(GStringSupport::DeScramble(text));
        EXPECT_EQ(Plain(text), units);
    }
    GString text("Ab");
    GStringSupport::Scramble(text);
    const std::u16string scrambled = Plain(text);
    EXPECT_EQ(scrambled, u"$1$5B82431202EB");
    for (std::size_t i = 0; i < scrambled.size(); ++i) {
        std::u16string changed = scrambled;
        changed[i] = scrambled[i] == u'0' ? u'1' : u'0';
        for (const std::u16string& broken : {changed, scrambled.substr(0, i)}) {
            text = Text(broken);
            EXPECT_EQ(GStringSupport::DeScramble(text), broken.empty()) << Readable(broken);
            EXPECT_EQ(Plain(text), broken);
        }
    }
}
