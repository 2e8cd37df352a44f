#include "framework/streams/text/GBin2TextStream.h"

#include <gtest/gtest.h>

#include <memory>
#include <tuple>
#include <vector>

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/encodings/GWinAnsiEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "framework/streams/text/GText2BinStream.h"
#include "tests/streams/StreamTestSupport.h"

using namespace std::string_literals;

namespace {

std::string UTF16Of(const std::u16string& text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
}

// A text with the stream that reads it.
class Text {
public:
    explicit Text(const std::string& bytes, const GEncoding* encoding = GUTF8Encoding::GetInstance())
        : mBytes(BufferOf(bytes)), mSource(mBytes), mStream(mSource, encoding) {}

    GBin2TextStream* operator->() { return &mStream; }
    GMemoryInStream& GetSource() { return mSource; }

    std::string Token() { return Give(mStream.ReadToken(mString)); }
    std::string Quoted() { return Give(mStream.ReadQuotedString(mString)); }
    std::string Line() { return Give(mStream.ReadLine(mString)); }

private:
    std::string Give(bool found) {
        if (!found) return mString.IsEmpty() ? "none" : "none, but a text was left";
        return std::string("<").append(UTF8Of(mString)).append(">");
    }

    GBuffer mBytes;
    GMemoryInStream mSource;
    GBin2TextStream mStream;
    GString mString = GString("left over");
};

TEST(GBin2TextStream, ReadsTokensUpToWhiteSpace) {
    const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
        {"alone", "one", "<one>", "none"},
        {"before a blank", "one two", "<one>", "< two>"},
        {"before a tab", "one\ttwo", "<one>", "<\ttwo>"},
        {"before backspace and vertical tab", "one\b\vtwo", "<one>", "<\b\vtwo>"},
        {"form feed is no white space", "one\ftwo", "<one\ftwo>", "none"},
        {"behind blanks", " \t one", "<one>", "none"},
        {"before a line end", "one\r\ntwo", "<one>", "<>"},
        {"a quote is no end", "one\"two\"", "<one\"two\">", "none"},
        {"an empty line", "\r\none", "none", "<>"},
        {"blanks alone", "  \r\none", "none", "<>"},
        {"nothing", "", "none", "none"},
    };
    for (const auto& [what, input, token, rest] : rows) {
        SCOPED_TRACE(what);
        Text text(input);
        EXPECT_EQ(text.Token(), token);
        EXPECT_EQ(text.Line(), rest);
    }
}

TEST(GBin2TextStream, ReadsQuotedStringsAndUndoesTheirEscapes) {
    const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
        {"plain", "\"anna\" x", "<anna>", "< x>"},
        {"empty", "\"\"", "<>", "none"},
        {"two in a row", "\"a\"\"b\"", "<a>", "<\"b\">"},
        {"quote", "\"a\\\"b\"", "<a\"b>", "none"},
        {"single quote", "\"a\\'b\"", "<a'b>", "none"},
        {"backslashes", "\"C:\\\\jobs\\\\\"", "<C:\\jobs\\>", "none"},
        {"backslash, then quote", "\"a\\\\\\\"b\"", "<a\\\"b>", "none"},
        {"line end", "\"a\\nb\"", "<a\r\nb>", "none"},
        {"tab", "\"a\\tb\"", "<a\tb>", "none"},
        {"unknown escape", "\"a\\qb\"", "<a\\qb>", "none"},
        {"yen sign as backslash", "\"a\xC2\xA5tb\"", "<a\tb>", "none"},
        {"other line ends in a row of units",
         "\"a\xE0\xA8\x8A"
         "b\"",
         "<a\xE0\xA8\x8A"
         "b>",
         "none"},
        {"white space in front", " \"a\"", "none", "< \"a\">"},
        {"no quote", "anna", "none", "<anna>"},
        {"not closed", "\"anna", "none", "<\"anna>"},
        {"closed on the next line", "\"anna\n\"", "none", "<\"anna>"},
        {"the closing quote is escaped", "\"anna\\\"", "none", "<\"anna\\\">"},
        {"an escape at the end", "\"anna\\", "none", "<\"anna\\>"},
        {"an escaped line end", "\"anna\\\n\"", "none", "<\"anna\\>"},
        {"nothing", "", "none", "none"},
    };
    for (const auto& [what, input, quoted, rest] : rows) {
        SCOPED_TRACE(what);
        Text text(input);
        EXPECT_EQ(text.Quoted(), quoted);
        EXPECT_EQ(text.Line(), rest);
    }
}

TEST(GBin2TextStream, ReadsLinesOfEveryLineEnd) {
    const std::tuple<const char*, const char*, std::vector<std::string>> rows[] = {
        {"CR LF", "a\r\nb\r\n", {"<a>", "<b>"}},
        {"LF", "a\nb\n", {"<a>", "<b>"}},
        {"CR", "a\rb\r", {"<a>", "<b>"}},
        {"LF CR are two", "a\n\rb", {"<a>", "<>", "<b>"}},
        {"a mark but for the first", "\uFEFFa\n\uFEFFb", {"<a>", "<\uFEFFb>"}},
        {"a mark alone", "\uFEFF", {}},
        {"no end at the end", "a\nb", {"<a>", "<b>"}},
        {"empty lines", "\n\r\n\r", {"<>", "<>", "<>"}},
        {"nothing", "", {}},
    };
    for (const auto& [what, input, lines] : rows) {
        SCOPED_TRACE(what);
        Text text(input);
        for (const std::string& line : lines) EXPECT_EQ(text.Line(), line);
        EXPECT_TRUE(text->IsAtEnd());
        EXPECT_EQ(text.Line(), "none");
        EXPECT_EQ(text.Line(), "none");
    }
}

TEST(GBin2TextStream, SkipsWhiteSpaceWithAndWithoutLineEnds) {
    Text onLine(" \t\r\n x");
    onLine->SkipWhiteSpace();
    onLine->SkipWhiteSpace();
    EXPECT_EQ(onLine.Line(), "<>");
    EXPECT_EQ(onLine.Line(), "< x>");

    Text across(" \t\r\n\r \n x");
    across->SkipWhiteSpaceAndLineEnds();
    EXPECT_EQ(across.Line(), "<x>");

    Text toTheEnd(" \r\n ");
    toTheEnd->SkipWhiteSpaceAndLineEnds();
    EXPECT_TRUE(toTheEnd->IsAtEnd());
}

TEST(GBin2TextStream, ReadsEveryEncoding) {
    const std::tuple<const char*, std::string, const GEncoding*> rows[] = {
        {"UTF-8", "\"gr\xC3\xBC\xC3\x9F\" x\r\nend", GUTF8Encoding::GetInstance()},
        {"UTF-8 with a mark", "\xEF\xBB\xBF\"gr\xC3\xBC\xC3\x9F\" x\r\nend", GUTF8Encoding::GetInstance()},
        {"WinAnsi", "\"gr\xFC\xDF\" x\r\nend", GWinAnsiEncoding::GetInstance()},
        {"UTF-16", UTF16Of(u"\"gr\u00FC\u00DF\" x\r\nend"), GUnicodeEncoding::GetInstance()},
        {"UTF-16 with a mark", UTF16Of(u"\uFEFF\"gr\u00FC\u00DF\" x\r\nend"),
         GUnicodeEncoding::GetInstance()},
    };
    for (const auto& [what, bytes, encoding] : rows) {
        SCOPED_TRACE(what);
        Text text(bytes, encoding);
        EXPECT_EQ(text.Quoted(), "<gr\xC3\xBC\xC3\x9F>");
        EXPECT_EQ(text.Token(), "<x>");
        EXPECT_EQ(text.Line(), "<>");
        EXPECT_EQ(text.Line(), "<end>");
        EXPECT_EQ(text.Line(), "none");
    }
    // Halves of units that are no line ends.
    Text halves(UTF16Of(u"\u0A0D\u0D0A\u0A00 x\nend"), GUnicodeEncoding::GetInstance());
    EXPECT_EQ(halves.Token(), "<\u0A0D\u0D0A\u0A00>");
    EXPECT_EQ(halves.Line(), "< x>");
    EXPECT_EQ(halves.Line(), "<end>");
}

TEST(GBin2TextStream, InvalidBytesEndTheText) {
    const std::tuple<const char*, std::string, const GEncoding*> rows[] = {
        {"a stray byte", "one\ntwo\xFF\nthree", GUTF8Encoding::GetInstance()},
        {"a sequence cut off by the line end", "one\ntwo\xC3\nthree", GUTF8Encoding::GetInstance()},
        {"a sequence cut off by the end", "one\ntwo\xE2\x82", GUTF8Encoding::GetInstance()},
        {"half a unit", UTF16Of(u"one\ntwo") + "x", GUnicodeEncoding::GetInstance()},
    };
    for (const auto& [what, bytes, encoding] : rows) {
        SCOPED_TRACE(what);
        Text text(bytes, encoding);
        EXPECT_EQ(text.Line(), "<one>");
        EXPECT_EQ(text.Line(), "<two>");
        EXPECT_EQ(text.Line(), "none");
        text->Reset();
        EXPECT_EQ(text.Line(), "<one>");
    }
    Text quoted("\"a\xFF\" \"b\"\n\"c\"");
    EXPECT_EQ(quoted.Quoted(), "none") << "not closed behind invalid bytes";
    EXPECT_EQ(quoted.Line(), "<\"a>");
    EXPECT_EQ(quoted.Quoted(), "none");
}

TEST(GBin2TextStream, TheSourceStandsBehindTheLineThatWasTouched) {
    Text text("one two\r\nthree\r\nfour");
    EXPECT_EQ(text.Token(), "<one>");
    EXPECT_EQ(text.GetSource().GetPosition(), 9);
    EXPECT_EQ(text.Line(), "< two>");
    EXPECT_EQ(text.GetSource().GetPosition(), 9);
    EXPECT_EQ(text.Token(), "<three>");
    EXPECT_EQ(text.GetSource().GetPosition(), 16);
}

TEST(GBin2TextStream, LinesOfEveryLengthAroundTheReadSize) {
    for (const std::size_t length : {4093u, 4094u, 4095u, 4096u, 4097u, 8191u, 8192u, 100000u}) {
        for (const char* const lineEnd : {"\r\n", "\n", "\r"}) {
            SCOPED_TRACE(length);
            const std::string line(length, 'x');
            Text text(line + lineEnd + "end" + lineEnd);
            EXPECT_EQ(text.Line(), std::string("<").append(line).append(">"));
            EXPECT_EQ(text.Line(), "<end>");
            EXPECT_EQ(text.Line(), "none");
        }
    }
}

// A source that delivers one byte at a time and can give back no more than that.
class DrippingSource : public GBufferedInStream {
public:
    explicit DrippingSource(const std::string& bytes) : mBytes(BufferOf(bytes)), mSource(mBytes) {}
    DrippingSource(const DrippingSource& other)
        : GBufferedInStream(other), mBytes(other.mBytes), mSource(mBytes) {
        mSource.Skip(other.mSource.GetPosition());
    }

    GInStream* CreateClone() const override { return new DrippingSource(*this); }
    long Read(GBuffer& out, long maxBytes) override { return mSource.Read(out, std::min(maxBytes, 1L)); }
    void Reset() override { mSource.Reset(); }
    long Unread(long count) override { return mSource.Unread(std::min(count, 1L)); }
    void SetRollBackPoint() override { mSource.SetRollBackPoint(); }
    long RollBack() override { return mSource.RollBack(); }

private:
    GBuffer mBytes;
    GMemoryInStream mSource;
};

TEST(GBin2TextStream, ReadsASourceThatDripsAndOwnsIt) {
    // A lone CR of UTF-16 would need a source that takes two bytes back.
    const std::tuple<std::string, const GEncoding*, std::vector<std::string>> rows[] = {
        {"\"a\" b\r\nc\r\r\nd", GUTF8Encoding::GetInstance(), {" b", "c", "", "d"}},
        {UTF16Of(u"\"a\" b\r\nc\nd"), GUnicodeEncoding::GetInstance(), {" b", "c", "d"}}};
    for (const auto& [bytes, encoding, lines] : rows) {
        GBin2TextStream stream(new DrippingSource(bytes), encoding);
        GString found;
        EXPECT_TRUE(stream.ReadQuotedString(found));
        EXPECT_EQ(UTF8Of(found), "a");
        for (const std::string& line : lines) {
            EXPECT_TRUE(stream.ReadLine(found));
            EXPECT_EQ(UTF8Of(found), line);
        }
        EXPECT_TRUE(stream.IsAtEnd());
    }
}

TEST(GBin2TextStream, DeliversItsTextAsUTF16InPiecesOfEverySize) {
    const std::u16string text = u"gr\u00FC\u00DF\r\n\u20AC\r\n";
    const std::string bytes = "\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F\r\n\xE2\x82\xAC\r\n";
    for (long size = 1; size <= 24; ++size) {
        Text stream(bytes);
        GInStream& in = *stream.operator->();
        EXPECT_EQ(ReadAll(in, size), UTF16Of(text)) << "pieces of " << size;
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

TEST(GBin2TextStream, AClonesPlaceIsItsOwn) {
    Text text("one two\r\nthree");
    EXPECT_EQ(text.Token(), "<one>");
    const std::unique_ptr<GBin2TextStream> clone(text->CreateClone());
    GString line;
    EXPECT_TRUE(clone->ReadLine(line));
    EXPECT_EQ(UTF8Of(line), " two");
    EXPECT_TRUE(clone->ReadLine(line));
    EXPECT_EQ(UTF8Of(line), "three");
    EXPECT_EQ(text.Line(), "< two>");
}

TEST(GBin2TextStream, RefusesToWorkWithoutAnEncoding) {
    const GBuffer bytes("x");
    GMemoryInStream source(bytes);
    EXPECT_THROW(GBin2TextStream(source, nullptr), GSimpleException);
    GBuffer target;
    GMemoryOutStream out(target);
    EXPECT_THROW(GText2BinStream(out, nullptr), GSimpleException);
}

TEST(GText2BinStream, WritesTextAndLineEndsInItsEncoding) {
    const GString text = GString::FromUTF8("gr\u00FC\u00DF \u20AC");
    const std::tuple<const char*, const GEncoding*, std::string> rows[] = {
        {"UTF-8", GUTF8Encoding::GetInstance(), "gr\u00FC\u00DF \u20AC\r\n"},
        {"UTF-16", GUnicodeEncoding::GetInstance(), UTF16Of(u"gr\u00FC\u00DF \u20AC\r\n")},
        {"WinAnsi", GWinAnsiEncoding::GetInstance(), "gr\xFC\xDF \x80\r\n"},
        {"ASCII lacks three", GASCIIEncoding::GetInstance(), "gr@@ @\r\n"},
    };
    for (const auto& [what, encoding, bytes] : rows) {
        SCOPED_TRACE(what);
        GBuffer target;
        GMemoryOutStream out(target);
        GText2BinStream stream(out, encoding);
        stream.WriteString(text);
        stream.WriteEOL();
        EXPECT_EQ(BytesOf(target), bytes);
    }
}

TEST(GText2BinStream, QuotesEscapesAndEndsLines) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"plain", "anna", "\"anna\"\r\n"},
        {"empty", "", "\"\"\r\n"},
        {"quote and backslash", "a\"b\\c", "\"a\\\"b\\\\c\"\r\n"},
        {"tab and line ends", "a\tb\r\nc\nd\re", "\"a\\tb\\nc\\nd\\ne\"\r\n"},
    };
    for (const auto& [what, text, bytes] : rows) {
        SCOPED_TRACE(what);
        GBuffer target;
        GText2BinStream out(new GMemoryOutStream(target), GUTF8Encoding::GetInstance());
        out.WriteQuotedString(GString::FromUTF8(text));
        out.WriteEOL();
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
    try {
        stream.WriteString("d");
        ADD_FAILURE() << "nothing was thrown";
    } catch (const GSimpleException& failure) {
        EXPECT_EQ(failure.GetExceptionID(), 2464);
    }
}

}  // namespace
