#include "framework/streams/text/GBin2TextStream.h"

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/streams/GReadAheadStream.h"
#include "framework/streams/text/GText2BinStream.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

std::string UTF16Of(const std::u16string& text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
}

// A text with the stream that reads it, from a source that drips.
struct Text {
    explicit Text(const std::string& bytes, const GEncoding* encoding = GUTF8Encoding::GetInstance(),
                  long piece = 1)
        : Text(new GBin2TextStream(new GReadAheadStream(new PieceStream(bytes, piece)), encoding)) {}
    explicit Text(GBin2TextStream* stream) : mStream(stream) {}

    GBin2TextStream* operator->() { return mStream.get(); }

    std::string Token() { return Give(mStream->ReadToken(mString)); }
    std::string Quoted() { return Give(mStream->ReadQuotedString(mString)); }
    std::string Line() { return Give(mStream->ReadLine(mString)); }
    /// All lines to the end.
    std::string Lines() {
        std::string lines;
        for (std::string line; (line = Line()) != "none";) lines += line;
        return lines;
    }

    std::string Give(bool found) {
        if (!found) return mString.IsEmpty() ? "none" : "none, but a text was left";
        return std::string("<").append(TextOf(mString)).append(">");
    }

    std::unique_ptr<GBin2TextStream> mStream;
    GString mString = GString("left over");
};

// A row shows apostrophes for quotation marks.
std::string WithQuotes(std::string_view row) {
    std::string text(row);
    std::replace(text.begin(), text.end(), '\'', '"');
    return text;
}

TEST(GBin2TextStream, ReadsTokensUpToWhiteSpace) {
    // A text, its token, and the rest of the line; a form feed is no white space, a quote no end.
    ForEachRow<3>({"one -> <one> -> none", "one two -> <one> -> < two>", "one\ttwo -> <one> -> <\ttwo>",
                   "one\b\vtwo -> <one> -> <\b\vtwo>", "one\ftwo -> <one\ftwo> -> none",
                   " \t one -> <one> -> none", "one\r\ntwo -> <one> -> <>", "one'two' -> <one'two'> -> none",
                   "\r\none -> none -> <>", "  \r\none -> none -> <>", " -> none -> none"},
                  [](auto input, auto token, auto rest) {
                      Text text{WithQuotes(input)};
                      EXPECT_EQ(text.Token(), WithQuotes(token));
                      EXPECT_EQ(text.Line(), rest);
                  });
}

TEST(GBin2TextStream, ReadsQuotedStringsAndUndoesTheirEscapes) {
    // A text, what stands in quotation marks at its start, and the rest of the line.
    ForEachRow<3>(
        {"'anna' x -> <anna> -> < x>", "'' -> <> -> none", "'a''b' -> <a> -> <'b'>",
         "'C:\\\\jobs\\\\' -> <C:\\jobs\\> -> none", "'a\\\\\\'b' -> <a\\'b> -> none",
         "'a\\nb' -> <a\r\nb> -> none", "'a\u00A5tb' -> <a\u00A5tb> -> none",
         "'a\u0A0Ab' -> <a\u0A0Ab> -> none", " 'a' -> none -> < 'a'>", "anna -> none -> <anna>",
         "'anna -> none -> <'anna>", "'anna\n' -> none -> <'anna>", "'anna\\' -> none -> <'anna\\'>",
         "'anna\\ -> none -> <'anna\\>", "'anna\\\n' -> none -> <'anna\\>", " -> none -> none"},
        [](auto input, auto quoted, auto rest) {
            Text text{WithQuotes(input)};
            EXPECT_EQ(text.Quoted(), WithQuotes(quoted));
            EXPECT_EQ(text.Line(), WithQuotes(rest));
        });
}

TEST(GBin2TextStream, ReadsLinesOfEveryLineEnd) {
    // LF CR are two; a byte-order mark is none but at the start.
    ForEachRow<2>(
        {"a\r\nb\r\n -> <a><b>", "a\nb\n -> <a><b>", "a\rb\r -> <a><b>", "a\n\rb\r\r\nc -> <a><><b><><c>",
         "\uFEFFa\n\uFEFFb -> <a><\uFEFFb>", "\uFEFF -> ", "a\nb -> <a><b>", "\n\r\n\r -> <><><>", " -> "},
        [](auto input, auto lines) {
            Text text{std::string(input)};
            EXPECT_EQ(text.Lines(), lines);
            EXPECT_TRUE(text->IsAtEnd());
            EXPECT_EQ(text.Line(), "none");
        });
}

TEST(GBin2TextStream, ReadsEveryEncoding) {
    // Some with a byte-order mark, and with units whose halves are line ends.
    const std::u16string text = u"\"gr\u00FC\u00DF\" \u0A0D\u0D0A\u0A00\r\nend";
    const std::tuple<std::string, const GEncoding*, std::string> rows[] = {
        {"\uFEFF\"gr\u00FC\u00DF\" x\r\nend", GUTF8Encoding::GetInstance(), "<x>"},
        {"\"gr\xFC\xDF\" x\r\nend", GWinAnsiEncoding::GetInstance(), "<x>"},
        {UTF16Of(text), GUnicodeEncoding::GetInstance(), "<\u0A0D\u0D0A\u0A00>"},
        {UTF16Of(u"\uFEFF" + text), GUnicodeEncoding::GetInstance(), "<\u0A0D\u0D0A\u0A00>"}};
    for (const auto& [bytes, encoding, token] : rows) {
        Text stream(bytes, encoding);
        EXPECT_EQ(stream.Quoted(), "<gr\u00FC\u00DF>");
        EXPECT_EQ(stream.Token(), token);
        EXPECT_EQ(stream.Lines(), "<><end>");
    }
}

TEST(GBin2TextStream, InvalidBytesEndTheText) {
    // A stray byte, a sequence cut off by the line end and by the end, and half a unit.
    const std::pair<std::string, const GEncoding*> rows[] = {
        {"one\ntwo\xFF\nthree", GUTF8Encoding::GetInstance()},
        {"one\ntwo\xC3\nthree", GUTF8Encoding::GetInstance()},
        {"one\ntwo\xE2\x82", GUTF8Encoding::GetInstance()},
        {UTF16Of(u"one\ntwo") + "x", GUnicodeEncoding::GetInstance()}};
    for (const auto& [bytes, encoding] : rows) {
        Text text(bytes, encoding);
        EXPECT_EQ(text.Lines(), "<one><two>") << bytes;
        text->Reset();
        EXPECT_EQ(text.Line(), "<one>");
    }
    Text quoted("\"a\xFF\" \"b\"\n\"c\"");
    EXPECT_EQ(quoted.Quoted(), "none");
    EXPECT_EQ(quoted.Line(), "<\"a>");
    EXPECT_EQ(quoted.Quoted(), "none");
}

TEST(GBin2TextStream, LinesOfEveryLengthAroundTheReadSizes) {
    // It reads 128 bytes, and then twice as many each time up to 4096.
    for (const std::size_t length : {127u, 128u, 129u, 383u, 384u, 3967u, 3968u, 8063u, 8064u, 100000u}) {
        for (const std::string lineEnd : {"\r\n", "\n", "\r"}) {
            const std::string line(length, 'x');
            Text text(line + lineEnd + "end" + lineEnd, GUTF8Encoding::GetInstance(), 1000000);
            EXPECT_EQ(text.Line(), "<" + line + ">");
            EXPECT_EQ(text.Lines(), "<end>") << length;
        }
    }
}

TEST(GBin2TextStream, DeliversItsTextAsUTF16InPiecesOfEverySize) {
    const std::u16string text = u"gr\u00FC\u00DF\r\n\u20AC\r\n";
    const std::string bytes = "\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F\r\n\xE2\x82\xAC\r\n";
    for (long size = 1; size <= 24; ++size) {
        Text stream(bytes);
        EXPECT_EQ(ReadAll(*stream.operator->(), size), UTF16Of(text)) << "pieces of " << size;
    }
}

TEST(GBin2TextStream, ATokenAfterHalfAUnitBeginsBehindIt) {
    Text text("abc");
    GBuffer byte;
    EXPECT_EQ(text->Read(byte, 1), 1);
    EXPECT_EQ(text.Token(), "<bc>");
    Text lastUnit("a");
    EXPECT_EQ(lastUnit->Read(byte, 1), 1);
    EXPECT_TRUE(lastUnit->IsAtEnd());
}

TEST(GBin2TextStream, TheSourceStandsBehindTheLineThatWasTouchedAndAClonesPlaceIsItsOwn) {
    const GBuffer bytes("one two\r\nthree");
    GMemoryInStream source(bytes);
    Text text(new GBin2TextStream(source, GUTF8Encoding::GetInstance()));
    EXPECT_EQ(text.Token(), "<one>");
    EXPECT_EQ(source.GetPosition(), 9);
    EXPECT_EQ(Text(text->CreateClone()).Lines(), "< two><three>");
    EXPECT_EQ(text.Line(), "< two>");
    EXPECT_EQ(source.GetPosition(), 9);
    EXPECT_EQ(text.Token(), "<three>");
}

TEST(GBin2TextStream, RefusesToWorkWithoutAnEncoding) {
    EXPECT_EQ(ThrownBy([] { Text("x", nullptr); }), 40017);
    GBuffer target;
    GMemoryOutStream out(target);
    EXPECT_EQ(ThrownBy([&] { GText2BinStream(out, nullptr); }), 40017);
}

// What is escaped is the buffer's.
TEST(GText2BinStream, WritesTextQuotedTextAndLineEndsInItsEncoding) {
    const std::pair<const GEncoding*, std::string> rows[] = {
        {GUTF8Encoding::GetInstance(), "gr\u00FC\u00DF \u20AC\"a\\\"\\n\"\r\n"},
        {GUnicodeEncoding::GetInstance(), UTF16Of(u"gr\u00FC\u00DF \u20AC\"a\\\"\\n\"\r\n")},
        {GWinAnsiEncoding::GetInstance(), "gr\xFC\xDF \x80\"a\\\"\\n\"\r\n"},
        {GASCIIEncoding::GetInstance(), "gr@@ @\"a\\\"\\n\"\r\n"}};
    for (const auto& [encoding, bytes] : rows) {
        GBuffer target;
        GText2BinStream stream(new GMemoryOutStream(target), encoding);
        stream.WriteString(GString::FromUTF8("gr\u00FC\u00DF \u20AC"));
        stream.WriteQuotedString(GString("a\"\n"));
        stream.WriteEOL();
        EXPECT_EQ(BytesOf(target), bytes);
    }
}

TEST(GText2BinStream, TakesUTF16BytesInPiecesOfEverySize) {
    const std::string units = UTF16Of(u"gr\u00FC\u00DF \u20AC!");
    for (std::size_t size = 1; size <= units.size(); ++size) {
        SCOPED_TRACE(size);
        GBuffer target;
        GMemoryOutStream out(target);
        GText2BinStream stream(out, GUTF8Encoding::GetInstance());
        for (std::size_t at = 0; at < units.size(); at += size) {
            const std::string piece = units.substr(at, size);
            EXPECT_EQ(stream.Write(BufferOf(piece)), static_cast<long>(piece.size()));
        }
        EXPECT_EQ(BytesOf(target), "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC!");
    }
}

TEST(GText2BinStream, ThrowsWhenTheTargetIsFull) {
    FullStream full(3);
    GText2BinStream stream(full, GUTF8Encoding::GetInstance());
    stream.WriteString("abc");
    stream.WriteString("");
    EXPECT_EQ(ThrownBy([&] { stream.WriteString("d"); }), 2464);
}

}  // namespace
