#include "framework/core/text/GString.h"

#include "framework/core/errors/GException.h"
#include "framework/core/text/GStringSupport.h"
#include "tests/core/ExpectValue.h"
#include "tests/core/encodings/EncodingForTests.h"

namespace {

std::string NameOf(const GString& text) {
    return BytesOf(text.GetEncodingName());
}

// A text over memory that is not its own.
GString Borrowed(const unsigned char* bytes, long length, long arraySize) {
    GBuffer borrowed;
    borrowed.SetFromStatic(bytes, length, arraySize);
    return GString(borrowed, Unicode(), true);
}

TEST(GString, EveryWayOfMakingOneSetsBytesAndEncodingUntilCharactersAreNeeded) {
    const GBuffer bytes = BufferOf("a\xE9"sv), odd = BufferOf("a\0b"sv);
    const auto* raw = reinterpret_cast<const unsigned char*>("a\xE9z");
    const char* const null = nullptr;
    const unsigned short units[] = {'e', 0x0301, 'x'};
    const std::tuple<const char*, GString, std::string, const char*, std::u16string> rows[] = {
        {"nothing", GString(), "", "NULL", u""},
        {"a literal", GString("ab"), "ab", "ASCIIEncoding", u"ab"},
        {"a null pointer", GString(null), "", "ASCIIEncoding", u""},
        {"in an encoding", GString("a\xE9", WinAnsi()), "a\xE9", "WinAnsiEncoding", u"a\u00E9"},
        {"a null pointer in an encoding", GString(null, WinAnsi()), "", "WinAnsiEncoding", u""},
        {"a text without encoding", GString("ab", nullptr), "", "NULL", u""},
        {"bytes without encoding", GString(BufferOf(u"ab"), nullptr), "a\0b\0"s, "NULL", u"ab"},
        {"units", GString(reinterpret_cast<const char*>(u"a"), Unicode()), "a\0"s, "UnicodeEncoding", u"a"},
        {"units and a half", GString(odd, Unicode(), true), "a\0b"s, "UnicodeEncoding", u"a"},
        {"bytes in an encoding", GString(raw, 2, WinAnsi()), "a\xE9", "WinAnsiEncoding", u"a\u00E9"},
        {"bytes of negative length", GString(raw, -1, WinAnsi()), "", "WinAnsiEncoding", u""},
        {"null bytes", GString(nullptr, 5, WinAnsi()), "", "WinAnsiEncoding", u""},
        {"a buffer", GString(bytes, WinAnsi()), "a\xE9", "WinAnsiEncoding", u"a\u00E9"},
        {"at once UTF-16", GString(bytes, WinAnsi(), false), "a\0\xE9\0"s, "UnicodeEncoding", u"a\u00E9"},
        {"UTF-8", GString::FromUTF8("e\xCC\x81"), "e\xCC\x81", "UTF-8Encoding", u"\u00E9"},
        {"UTF-16, composed", GString::FromUTF16(units, 2), "\xE9\0"s, "UnicodeEncoding", u"\u00E9"},
        {"UTF-16 of negative length", GString::FromUTF16(units, -3), "", "UnicodeEncoding", u""},
        {"no UTF-16", GString::FromUTF16(nullptr, 5), "", "UnicodeEncoding", u""}};
    for (const auto& [what, text, expected, encoding, characters] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(text.IsEmpty(), expected.empty());
        EXPECT_EQ(Plain(text), encoding == "NULL"s ? u"" : characters);
        EXPECT_EQ(BytesOf(text.GetEncodedBuffer()), expected) << "a conversion out changes nothing";
        GString cleared(text);
        cleared.Normalize(true), cleared.Clear();
        EXPECT_TRUE(cleared.IsEmpty());
        EXPECT_EQ(NameOf(text) + NameOf(cleared), encoding + std::string(encoding)) << "nor does clearing";
        EXPECT_EQ(text.GetLength(), static_cast<long>(characters.size()));
        EXPECT_EQ(NameOf(text), "UnicodeEncoding");
        EXPECT_EQ(text[0], characters[0]);
        EXPECT_EQ(Plain(text + Text(u"\u0301")), characters + u"\u0301") << "joining does not compose";
    }
}

TEST(GString, IsAValueAndTheSharedEmptyOneIsNeverConverted) {
    ExpectValue(GString("abc"), Text(u"\u4E00"));
    const GString first("abc");
    GString second(first);
    second.SetChar(0, 'x');
    EXPECT_TRUE(first == GString("abc") && GString() + first + GString() == first);
    EXPECT_EQ(GString::cEmptyString.GetLength(), 0);
    EXPECT_EQ(GString::cEmptyString.GetUTF16Ptr()[0], 0);
    EXPECT_EQ(GString::cEmptyString.Find(GString("a")), -1);
    EXPECT_EQ((GString("a") + GString::cEmptyString).GetLength(), 1);
    EXPECT_EQ(NameOf(GString::cEmptyString), "NULL");
}

TEST(GString, BorrowedBytesAreNeverWritten) {
    static constexpr char16_t cText[] = u"abc-";
    const auto* bytes = reinterpret_cast<const unsigned char*>(cText);
    GString text = Borrowed(bytes, 6, 10);
    EXPECT_EQ(text.GetEncodedBuffer().GetRawData(), bytes);
    text.SetChar(1, 'X');
    text.ToUpper();
    text.Replace(0, 'A', 'Y');
    EXPECT_EQ(Plain(text), u"YXC");
    GString longer = Borrowed(bytes, 6, 10);
    longer.SetLength(4);
    EXPECT_EQ(Plain(longer), u"abc\0"sv) << "nor is what lies behind them shown";
    EXPECT_EQ(std::u16string_view(cText), u"abc-");
}

TEST(GString, UTF16PointerIsZeroTerminatedAndAligned) {
    EXPECT_EQ(GString().GetUTF16Ptr()[0], 0);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(GString("ab").GetUTF16Ptr())), u"ab");
    // Two units at an odd address, with a third one behind them.
    alignas(2) static constexpr unsigned char cBytes[] = {'-', 'a', 0, 'b', 0, 'c', 'c'};
    const GString odd = Borrowed(cBytes + 1, 4, 6);
    EXPECT_EQ(odd[1], 'b');
    EXPECT_EQ(odd.Find(GString("b")), 1);
    const unsigned short* units = odd.GetUTF16Ptr();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(units) % 2, 0u);
    EXPECT_EQ(units[2], 0);
}

TEST(GString, ATextMayBeItsOwnArgument) {
    GString text("ab");
    text += text;
    text.Insert(1, text);
    EXPECT_TRUE(text.Replace(0, text, text));
    EXPECT_TRUE(text == GString("aababbab"));
    EXPECT_TRUE(text.Replace(0, text, GString("a-a")));
    EXPECT_TRUE(text.Replace(0, GString("-"), text));
    EXPECT_TRUE(text == GString("aa-aa"));
    text.Set("<%1>");
    text.SubstituteParams(text);
    EXPECT_TRUE(text == GString("<<%1>>"));
    text.GetSubstring(1, 4, text);
    EXPECT_TRUE(text == GString("<%1>"));
    text.Set(text);
    EXPECT_EQ(text.Find(text), 0);
}

// Everything that takes a position, beside the standard string; positions and counts may lie outside.
struct AStringAndItsModel {
    void CompareOnce() {
        mWhole = Make(12), mPart = Make(3), mOther = Make(4);
        mStart = static_cast<long>(mRandom() % (mWhole.size() + 7)) - 3;
        mCount = mRandom() % 16 == 0 ? 0x7FFFFFFF : static_cast<long>(mRandom() % 9) - 3;
        mPlace = static_cast<std::size_t>(std::clamp<long>(mStart, 0, static_cast<long>(mWhole.size())));
        mIsInside = mStart >= 0 && mPlace < mWhole.size();
        CompareReading();
        CompareWriting();
    }

    // Also a unit whose bytes look like another's when they are taken across two units.
    std::u16string Make(unsigned below) {
        std::u16string units;
        for (unsigned i = mRandom() % below; i > 0; --i) units += u"ab\u6100\0"[mRandom() % 4];
        return units;
    }

    static long Position(std::size_t found) { return found == ""s.npos ? -1 : static_cast<long>(found); }

    void CompareReading() {
        const GString text = Text(mWhole);
        const std::u16string set = u"xa" + mOther;
        const auto* const units = reinterpret_cast<const unsigned short*>(set.data());
        const auto count = static_cast<long>(set.size());
        ASSERT_EQ(text.Find(Text(mPart), mStart), mPart.empty() ? 0 : Position(mWhole.find(mPart, mPlace)));
        ASSERT_EQ(text.FindFirst('a', mStart), Position(mWhole.find(u'a', mPlace)));
        ASSERT_EQ(text.FindFirst(units, count, mStart), Position(mWhole.find_first_of(set, mPlace)));
        ASSERT_EQ(text.FindFirstNot('a', mStart), Position(mWhole.find_first_not_of(u'a', mPlace)));
        ASSERT_EQ(text.FindFirstNot(units, count, mStart), Position(mWhole.find_first_not_of(set, mPlace)));
        ASSERT_EQ(text.FindLast('a', mStart), mStart < 0 ? -1 : Position(mWhole.rfind(u'a', mPlace)));
        ASSERT_EQ(text[mStart], mIsInside ? mWhole[mPlace] : 0);
        const std::u16string part = mWhole.substr(mPlace, static_cast<std::size_t>(mCount));
        ASSERT_EQ(Plain(text.GetSubstring(mStart, mCount)), part) << "a negative count means the rest";
    }

    void Compare(const std::u16string& expected, const std::function<void(GString&)>& change) {
        GString text = Text(mWhole);
        change(text);
        ASSERT_EQ(Plain(text), expected);
    }

    void CompareWriting() {
        constexpr unsigned short cA = 'a', cX = 'x';
        std::u16string model = mWhole;
        if (mIsInside) model[mPlace] = u'x';
        Compare(model, [&](GString& text) { text.SetChar(mStart, cX); });
        Compare(std::u16string(mWhole).insert(mPlace, mOther),
                [&](GString& text) { text.Insert(mStart, Text(mOther)); });
        Compare(std::u16string(mWhole).insert(mPlace, 1, u'x'),
                [&](GString& text) { text.Insert(mStart, cX); });
        model = mWhole;
        if (mIsInside && mCount > 0) model.erase(mPlace, static_cast<std::size_t>(mCount));
        Compare(model, [&](GString& text) { text.Remove(mStart, mCount); });
        model = mWhole;
        model.resize(static_cast<std::size_t>(std::max(mStart, 0L)));
        Compare(model, [&](GString& text) { text.SetLength(mStart); });
        model = mWhole;
        std::replace(model.begin() + static_cast<long>(mPlace), model.end(), u'a', u'x');
        Compare(model, [&](GString& text) { ASSERT_EQ(text.Replace(mStart, cA, cX), model != mWhole); });
        model = mWhole;
        bool found = false;
        for (std::size_t at = mPlace; !mPart.empty() && (at = model.find(mPart, at)) != model.npos;
             at += mOther.size(), found = true)
            model.replace(at, mPart.size(), mOther);
        Compare(model,
                [&](GString& text) { ASSERT_EQ(text.Replace(mStart, Text(mPart), Text(mOther)), found); });
    }

    std::mt19937 mRandom{2};
    std::u16string mWhole, mPart, mOther;
    long mStart = 0, mCount = 0;
    std::size_t mPlace = 0;  // the start, but within the text
    bool mIsInside = false;
};

TEST(GString, AgreesWithTheStandardStringAlsoOutOfRange) {
    AStringAndItsModel model;
    for (int round = 0; round < 30000 && !HasFatalFailure(); ++round) model.CompareOnce();
    GString text("abc");
    EXPECT_THROW(text.SetLength(0x7FFFFFFF), GMemoryException);
    EXPECT_TRUE(text == GString("abc")) << "as it was";
    EXPECT_EQ(text.FindFirst(nullptr, 0, 0), -1) << "one of an empty set";
}

TEST(GString, ConvertsOut) {
    const std::tuple<const char*, GString, const GEncoding*, std::string, long> rows[] = {
        {"no encoding", GString(), WinAnsi(), "", 1},
        {"no target", GString("ab"), nullptr, "", 1},
        {"the same encoding, valid or not", GString("\xFF", UTF8()), UTF8(), "\xFF", 1},
        {"invalid input stops", GString("ab\xFF", UTF8()), Unicode(), "a\0b\0"s, 4},
        {"a character is missing", GString("\xE2\x82\xAC", UTF8()), MacRoman(), "@", 2},
        {"all characters are there", GString("\xE2\x82\xAC", UTF8()), WinAnsi(), "\x80", 1}};
    for (const auto& [what, text, target, bytes, result] : rows) {
        SCOPED_TRACE(what);
        GBuffer out("old");
        EXPECT_EQ(text.GetBuffer(out, target), result);
        EXPECT_EQ(BytesOf(out), bytes);
        EXPECT_EQ(BytesOf(text.GetBuffer(target)), bytes);
    }
}

TEST(GString, CompatibleBytes) {
    const std::tuple<const char*, std::string_view, const GEncoding*, bool> rows[] = {
        {"not ASCII", "\x80", ASCII(), false},     {"WinAnsi", "\x80", WinAnsi(), true},
        {"not WinAnsi", "\x81", WinAnsi(), false}, {"not MacRoman", "\xF0", MacRoman(), false},
        {"not PDFDoc", "\x9F", PDFDoc(), false},   {"UTF-8", "\xC3\xA9", UTF8(), true},
        {"not UTF-8", "\xC3", UTF8(), false},      {"a zero byte in UTF-8", "\0"sv, UTF8(), false},
        {"half a unit", "a"sv, Unicode(), false},  {"others are not asked", "\x01\x7F", MacExpert(), true},
        {"no encoding", "abc", nullptr, true}};
    for (const auto& [what, bytes, encoding, compatible] : rows)
        EXPECT_EQ(GString::AreCompatible(BufferOf(bytes), encoding), compatible) << what;
}

TEST(GString, SubstitutesParameters) {
    // A text, its parameters by commas, and the result.
    ForEachRow<3>({u"%2 of %1 -> 3,7 -> 7 of 3", u"%1%1 -> a,b -> aa", u"%3 -> a,b -> %3", u"%0 -> a,b -> %0",
                   u"%s %1 %s %s -> a,b -> a a b %s", u"100% -> a,b -> 100%", u"%%1 -> a,b -> %a",
                   u"%d %x % -> a,b -> %d %x %", u"%1 %2 -> %2,%1 -> %2 %1", u"%%1 -> 1,b -> %1",
                   u"<%1> -> ,b -> <>", u" -> a,b -> ", u"%9 -> 1,2,3,4,5,6,7,8,i -> i", u"%10 -> x,y -> x0"},
                  [&](auto before, auto parameters, auto after) {
                      GTable<GString> texts;
                      GStringSupport::SeparatedStringToStringTable(Text(parameters), GString(","), texts,
                                                                   true);
                      GTable<const GString*> table;
                      for (const GString& text : texts) table.Append(&text);
                      EXPECT_EQ(Plain(Text(before).SubstituteParams(table)), after);
                  });
}

TEST(GString, TakesParametersInEveryForm) {
    const GString a("a"), b("b"), c("c");
    const auto text = [] { return GString("%1-%s-%3"); };
    EXPECT_TRUE(text().SubstituteParams(a) == GString("a-a-%3"));
    EXPECT_TRUE(text().SubstituteParams(b, a) == GString("b-b-%3"));
    EXPECT_TRUE(text().SubstituteParams(a, b, c) == GString("a-a-c"));
    EXPECT_TRUE(text().SubstituteParams(3, &c, &b, &a) == GString("c-c-a"));
    EXPECT_TRUE(text().SubstituteParams(1, &b, &a, &c) == GString("b-b-%3")) << "of that count only";
    EXPECT_TRUE(text().SubstituteParams(0) == text());
    for (const auto& [counted, count] :
         {std::pair("", 0L), {"%", 0}, {"%0", 0}, {"%9%s", 2}, {"%%1", 1}, {"%S %d", 0}})
        EXPECT_EQ(GString(counted).GetNumSubstitutes(), count) << counted;
    EXPECT_TRUE(text().SubstituteParams(GTable<const GString*>{nullptr, &b}) == GString("%1-%s-%3"));
    EXPECT_EQ(Plain(GString("e%1%2").SubstituteParams(Text(u"\u0301"), GString("\xE9", WinAnsi()))),
              u"\u00E9\u00E9")
        << "the result is composed";
}

// How numbers are written and read is the buffer's; here is what a string makes of its arguments.
TEST(GString, OfNumbers) {
    const long beyond32Bits = static_cast<long>(4294967301LL);
    GString digits("old"), high("old");
    digits.SetInt(beyond32Bits, 3);
    high.SetWithHighPrecision(1.0 / 3);
    const std::pair<GString, std::string> rows[] = {
        {GString(std::numeric_limits<int>::min()), "-2147483648"},
        {GString(4294967295u), "4294967295"},
        {GString(beyond32Bits), "5"},
        {GString(static_cast<unsigned long>(beyond32Bits)), "5"},
        {GString(-9223372036854775807LL - 1), "-9223372036854775808"},
        {GString(9223372036854775808ULL), "-9223372036854775808"},
        {digits, "005"},
        {GString(2.5), "2.5"},
        {GString(1.5, GBuffer("%8.2f")), "    1.5"},
        {GString(1.0 / 3, 4L), "0.3333"},
        {high, "0.333333333333333"}};
    for (const auto& [number, text] : rows) {
        EXPECT_EQ(BytesOf(number.GetEncodedBuffer()), text);
        EXPECT_EQ(NameOf(number), "ASCIIEncoding") << text;
    }
}

TEST(GString, NumbersAreReadFromText) {
    const std::tuple<const char16_t*, std::int32_t, std::uint32_t, long long, double> rows[] = {
        {u"4294967297.5e3x", 2147483647, 1, 4294967297LL, 4294967297500.0},
        {u"\b12\u0661", 0, 12, 12, 12},
        {u"\f-12", -12, 0, 0, 0},
        {u"\uFF11", 0, 0, 0, 0}};
    for (const auto& [raw, int32, uint32, int64, real] : rows) {
        const GString text = Text(raw);
        EXPECT_EQ(std::tuple(text.GetInt32(), text.GetUInt32()), std::tuple(int32, uint32)) << Readable(raw);
        EXPECT_EQ(std::tuple(text.GetInt64(), text.GetReal()), std::tuple(int64, real)) << Readable(raw);
    }
}

TEST(GString, ComparesTextsByTheirLittleEndianBytesWhateverTheirEncodings) {
    // Whether the first is equal to the second, or less, or just another one.
    const std::tuple<const char*, GString, char, GString> rows[] = {
        {"ASCII and UTF-16", GString("abc"), '=', Text(u"abc")},
        {"WinAnsi and UTF-8", GString("\xE9", WinAnsi()), '=', GString::FromUTF8("\xC3\xA9")},
        {"the same bytes in two encodings", GString("\xE9", WinAnsi()), '!', GString("\xE9", MacRoman())},
        {"composed and not", GString::FromUTF8("e\xCC\x81"), '=', Text(u"\u00E9")},
        {"nothing and an empty text", GString(), '=', GString("")},
        {"a zero in it", GString(BufferOf("a\0b"sv), WinAnsi()), '!', GString("a")},
        {"letters", GString("abc"), '<', GString("abd")},
        {"a shorter text", GString("ab"), '<', GString("abc")},
        {"nothing", GString(), '<', GString("a")},
        {"capitals first", GString("abC"), '<', GString("abc")},
        {"the low byte decides", Text(u"\u0100"), '<', Text(u"\u00FF")},
        {"then the high byte", Text(u"\u0141"), '<', Text(u"\u0241")},
        {"a mixed pair", GString("\xE9", WinAnsi()), '<', Text(u"\u00EA")}};
    for (const auto& [what, a, relation, b] : rows) {
        SCOPED_TRACE(what);
        const bool equal = relation == '=', less = relation == '<';
        EXPECT_TRUE((a == b) == equal && (b == a) == equal && (a != b) == !equal);
        EXPECT_TRUE(!equal || GString(a).GetHash() == GString(b).GetHash());
        EXPECT_TRUE(a <= a && a >= a && !(a < a || a > a));
        if (relation == '!') continue;
        EXPECT_TRUE((a < b) == less && GString::IsLessThan(a, b) == less && (b > a) == less);
        EXPECT_TRUE(a <= b && b >= a && !(b < a || a > b) && (b <= a) == equal && (a >= b) == equal);
    }
    EXPECT_EQ(NameOf(std::get<1>(rows[1])), "WinAnsiEncoding") << "comparing converts neither text";
    EXPECT_EQ(GString("A").GetHash(), 0x610u) << "((2 rotl 4) ^ 0x41) rotl 4, over two bytes";
}

TEST(GString, CaseMappingAndOrderIgnoringCase) {
    // Capitals become small letters.
    ForEachRow<3>({u"a -> B -> <", u"B -> a -> >", u"ABC -> abc -> =", u"_ -> Z -> <"},
                  [](auto a, auto b, auto order) {
                      EXPECT_EQ(GString::IsLessThanIgnoreCase(Text(a), Text(b)), order == u"<");
                      EXPECT_EQ(GString::IsLessThanIgnoreCase(Text(b), Text(a)), order == u">");
                  });
    GString text = Text(u"Stra\u00DFe \u00C4\u0416 \xD801\xDC00 1");
    text.ToUpper();
    EXPECT_EQ(Plain(text), u"STRA\u00DFE \u00C4\u0416 \xD801\xDC00 1");
    text.ToLower();
    EXPECT_EQ(Plain(text), u"stra\u00DFe \u00E4\u0436 \xD801\xDC00 1");
    GString none;
    none.ToUpper();
    GString empty("", WinAnsi());
    empty.ToLower();
    EXPECT_EQ(NameOf(none) + NameOf(empty), "NULLWinAnsiEncoding") << "nothing to map, nothing converted";
}

}  // namespace
