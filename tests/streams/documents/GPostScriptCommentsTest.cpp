#include "framework/streams/documents/GPostScriptComments.h"

#include "tests/streams/StreamTestSupport.h"

namespace {

const std::string cUEL = "\x1B%-12345X";
const std::string cHeader = "%!PS-Adobe-3.0\n%%Title: A\n%%Pages: 2\n%%EndComments\n";

std::string WithPreview(const std::string& document, const std::string& length) {
    return "\xC5\xD0\xD3\xC6\x20\0\0\0"s + length + std::string(20, '\0') + document + "II*\0preview"s;
}

// "title pages copies", "whole" behind it, or "none" for no PostScript.
std::string Told(const GPostScriptComments& comments) {
    const std::string end = comments.isComplete ? " whole" : "";
    if (!comments.isPostScript) return "none" + end;
    return TextOf(comments.title) + " " + std::to_string(comments.pages) + " " +
           std::to_string(comments.copies) + end;
}

const std::string cLongPart(400000, '%');

const std::tuple<const char*, std::string, const char*> cDocuments[] = {
    {"nothing", "", "none"},
    {"text", "Hello\n%!PS\n%%EOF\n", "none whole"},
    {"a header", cHeader, "A 2 -1"},
    {"an end", cHeader + "%%EOF", "A 2 -1 whole"},
    {"an end and a byte", cHeader + "%%EOFx", "A 2 -1"},
    {"an end in a line", cHeader + "(%%EOF", "A 2 -1"},
    {"zeros and blanks behind the end", cHeader + "%%EOF\r\n\x04" + std::string(3000, '\0') + " ",
     "A 2 -1 whole"},
    {"more behind it than is looked at", cHeader + "%%EOF\n" + std::string(70000, ' '), "A 2 -1"},
    {"an end in the document", cHeader + "%%EOF\n%%EndDocument\n", "A 2 -1"},
    {"a job end behind it", cHeader + "%%EOF\n" + cUEL + "@PJL EOJ\r\n" + cUEL, "A 2 -1 whole"},
    {"CR LF and tabs", "%!PS\r\n%%Title:\tA b \t\r\n%%Pages: 3 1\r\n", "A b 3 -1"},
    {"CR", "%!PS\r%%Title: A\r%%Pages: 3\r", "A 3 -1"},
    {"Ctrl-D in front", "\x04" + cHeader, "A 2 -1"},
    {"a job language in front",
     cUEL + "@PJL JOB NAME=\"%!x\"\r\n@PJL ENTER LANGUAGE=POSTSCRIPT\r\n" + cHeader, "A 2 -1"},
    {"a long one", cUEL + "@PJL COMMENT " + std::string(9000, 'x') + "\r\n" + cHeader, "A 2 -1"},
    {"no more than its start", cUEL + cHeader, "A 2 -1"},
    {"another language", cUEL + "@PJL ENTER LANGUAGE=PCL\r\n\x1B" + "E", "none"},
    {"a preview behind it", WithPreview(cHeader + "%%EOF\n", "\x39\0\0\0"s), "A 2 -1 whole"},
    {"a length that is not there", WithPreview(cHeader + "%%EOF\n", "\xFF\xFF\xFF\xFF"), "A 2 -1"},
    {"half such a header", "\xC5\xD0\xD3\xC6\x20\0"s, "none"},
    {"the first of two", cHeader.substr(0, 40) + "\n%%Pages: 5\n%%Title: B\n", "A 2 -1"},
    {"a comment behind the header", "%!PS\nshowpage\n%%Title: A\n%%Pages: 2\n", " -1 -1"},
    {"numbers that are none", "%!PS\n%%Pages: 99999999999\n%%Requirements: numcopies(-1)\n", " -1 -1"},
    {"at the end",
     "%!PS\n%%Title: (atend)\n%%Pages: (atend)\nx\n%%Trailer\n%%Pages: 3\n%%Pages: 4\n"
     "%%Title: Z\n%%EOF\n",
     "Z 4 -1 whole"},
    {"at the end, but not that far", "%!PS\n%%Pages: (atend)\n%%Pages: 3\n%%EOF\n", " 3 -1 whole"},
    {"a trailer of a document inside",
     "%!PS\n%%Pages: (atend)\nx\n%%Trailer\n%%Pages: 3\n%%EOF\n%%EndDocument\n", " -1 -1"},
    {"behind much else", cHeader.substr(0, 26) + "x\n" + cLongPart + "\n%%Trailer\n%%Pages: 7\n%%EOF\n",
     "A 7 -1 whole"},
    {"a header longer than is looked at", "%!PS\n" + cLongPart + "\n%%Title: A\nx\n", " -1 -1"},
    {"copies required", "%!PS\n%%Requirements: collate numcopies(3) duplex\n/#copies 5 def\n", " -1 3"},
    {"copies set", "%!PS\nx\n/#copies exch def /NumCopies  4>>\n%%Page: 1 1\n/#copies 5 def", " -1 4"},
    {"the last ones", "%!PS\nx\n/NumCopies 4\n/#copies 5 def\n", " -1 5"},
};

TEST(GPostScriptComments, TellsWhatTheDocumentSays) {
    for (const auto& [what, bytes, expected] : cDocuments) {
        SCOPED_TRACE(what);
        const GBuffer data = BufferOf(bytes);
        EXPECT_EQ(Told(GPostScriptComments::Read(GMemoryInStream(data))), expected);
        PieceStream pieces(bytes, 1000);
        pieces.Skip(3);
        EXPECT_EQ(Told(GPostScriptComments::Read(pieces)), expected);
        EXPECT_EQ(pieces.mPosition, std::min<long>(3, data.GetLength()));
    }
}

TEST(GPostScriptComments, ReadsTitlesInEveryForm) {
    const auto expect = [](std::string_view title, std::string_view expected) {
        const GBuffer data = BufferOf("%!PS\n%%Title:" + std::string(title) + "\n");
        EXPECT_EQ(TextOf(GPostScriptComments::Read(GMemoryInStream(data)).title), expected) << title;
    };
    ForEachRow<2>(
        {" plain text  -> plain text", "(a \\(b\\) (c\\\\) \\101\\7\\0501\\n\\q\\) -> a (b) (c\\) A\a(1\nq)",
         "(a) b -> a", "(not (closed -> not (closed", "(\\ -> ", "() -> ", " <41 c3A9> -> A\u00E9",
         "<FEFF00e9 20aC> -> \u00E9\u20AC", "<FEFF00e -> \u00E0", "<Text> -> <Text>",
         "(\\376\\377\\000A) -> A", "K\xC3\xA4se -> K\u00E4se", "K\xE4se \x80 -> K\u00E4se \u20AC"},
        expect);
    expect(std::string(5000, 'x'), std::string(1024, 'x'));
    expect("(" + std::string(5000, '(') + ")", std::string(1023, '('));
}

}  // namespace
