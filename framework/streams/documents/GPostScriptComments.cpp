#include "framework/streams/documents/GPostScriptComments.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/errors/GException.h"
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GPartialInStream.h"
#include "framework/streams/GStreamSupport.h"
#include "framework/streams/encodings/GHexDecode.h"

using namespace std::string_view_literals;

namespace {

constexpr long long cHead = 0x40000;  // bytes; the procedures that a driver sends first fit in
constexpr long long cTail = 0x10000;
constexpr std::string_view cBlanks = " \t"sv;
constexpr std::string_view cLineEnds = "\r\n"sv;
constexpr std::string_view cJobEnd = "\x1B%-12345X"sv;  // leaves the language

/// A part of the source, as bytes.
struct Part {
    long long start = 0;
    long long length = 0;

    GBuffer ReadFrom(const GInStream& source) const {
        GPartialInStream part(source.CreateClone(), start, length);
        GBuffer bytes;
        GStreamSupport::GetContent(part, bytes);
        return bytes;
    }
};

std::string_view ViewOf(const GBuffer& bytes) {
    return {reinterpret_cast<const char*>(bytes.GetRawData()), static_cast<std::size_t>(bytes.GetLength())};
}

GBuffer BytesOf(std::string_view text) {
    return GBuffer(reinterpret_cast<const unsigned char*>(text.data()), static_cast<long>(text.size()));
}

std::string_view Behind(std::string_view text, std::size_t position) {
    return text.substr(std::min(position, text.size()));
}

// The first characters of `text` that are in `set` are left out.
std::string_view WithoutFirst(std::string_view text, std::string_view set) {
    return Behind(text, text.find_first_not_of(set));
}

// Takes the first line off; its end is CR LF, CR or LF.
std::string_view TakeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find_first_of(cLineEnds));
    text.remove_prefix(line.size());
    if (text.starts_with("\r\n"sv)) text.remove_prefix(1);
    if (!text.empty()) text.remove_prefix(1);
    return line;
}

bool IsLineStart(std::string_view text, std::size_t position) {
    return position == 0 || "\r\n\x04"sv.find(text[position - 1]) != std::string_view::npos ||
           text.substr(0, position).ends_with(cJobEnd);
}

// The first of `mark` at the start of a line, or npos.
std::size_t FindAtLineStart(std::string_view text, std::string_view mark) {
    std::size_t found = text.find(mark);
    while (found != std::string_view::npos && !IsLineStart(text, found)) found = text.find(mark, found + 1);
    return found;
}

std::int32_t NumberIn(std::string_view text) {
    text = WithoutFirst(text, cBlanks);
    std::int32_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && number >= 0 ? number : GPostScriptComments::cUnknown;
}

std::uint32_t LittleEndianAt(std::string_view data, std::size_t position) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(data[position + i - 1]);
    }
    return number;
}

// An EPS file may begin with a signature and where its PostScript stands; a preview follows that.
Part FindPostScriptPart(const GInStream& source) {
    constexpr long cHeaderSize = 12;
    const auto length = static_cast<long long>(GStreamSupport::GetStreamLength(source));
    const GBuffer header = Part{0, cHeaderSize}.ReadFrom(source);
    const std::string_view view = ViewOf(header);
    if (view.size() < cHeaderSize || !view.starts_with("\xC5\xD0\xD3\xC6"sv)) return {0, length};
    const long long start = std::min<long long>(LittleEndianAt(view, 4), length);
    return {start, std::min<long long>(LittleEndianAt(view, 8), length - start)};
}

// The document behind what wraps it; nothing when there is none.
std::optional<std::string_view> FindDocument(const GBuffer& head) {
    const GTypeEnums::Types type = GStreamSupport::GetBufferType(head);
    if (type != GTypeEnums::cPostScript && type != GTypeEnums::cEPS && type != GTypeEnums::cPrinterJob)
        return std::nullopt;
    const std::string_view view = ViewOf(head);
    const std::size_t start = FindAtLineStart(view, "%!"sv);
    if (start == std::string_view::npos) return std::nullopt;
    return view.substr(start);
}

bool EndsInEOF(std::string_view tail) {
    constexpr std::string_view cLastLine = "%%EOF"sv;
    const std::size_t found = tail.rfind(cLastLine);
    if (found == std::string_view::npos || !IsLineStart(tail, found)) return false;
    const std::string_view rest = WithoutFirst(tail.substr(found + cLastLine.size()), " \t\r\n\0\x04\x1A"sv);
    return rest.empty() || rest.starts_with(cJobEnd);
}

// The value of a backslash's sequence at the front of `text`, which is taken off; empty for a line end.
std::string_view TakeEscape(std::string_view& text, char& storage) {
    constexpr std::string_view cNames = "nrtbf"sv;
    constexpr std::string_view cValues = "\n\r\t\b\f"sv;
    unsigned value = 0;
    std::size_t count = 0;
    for (; count < 3 && count < text.size() && text[count] >= '0' && text[count] <= '7'; ++count) {
        value = value * 8 + static_cast<unsigned>(text[count] - '0');
    }
    if (count == 0) {
        if (text.empty()) return {};
        const std::size_t name = cNames.find(text.front());
        value = static_cast<unsigned char>(name < cNames.size() ? cValues[name] : text.front());
        count = 1;
    }
    text.remove_prefix(count);
    storage = static_cast<char>(value);
    return {&storage, 1};
}

// What stands between parentheses, which may be nested, with its escapes undone.
GBuffer UnquotedString(std::string_view text) {
    GBuffer bytes;
    int depth = 0;
    while (!text.empty()) {
        const char character = text.front();
        text.remove_prefix(1);
        char storage = character;
        std::string_view taken = {&storage, 1};
        if (character == '(') ++depth;
        if (character == '(' && depth == 1) continue;
        if (character == ')' && --depth == 0) break;
        if (character == '\\') taken = TakeEscape(text, storage);
        bytes += BytesOf(taken);
    }
    return bytes;
}

// Of "<...>"; as it stands when that is no hexadecimal string.
GBuffer UnhexedString(std::string_view text) {
    const GBuffer digits = BytesOf(text.substr(1));
    GHexDecode decoder(new GMemoryInStream(digits));
    GBuffer bytes;
    try {
        GStreamSupport::GetContent(decoder, bytes);
    } catch (const GException&) {
        return BytesOf(text);
    }
    return bytes;
}

GString TextOf(const GBuffer& bytes) {
    const std::string_view view = ViewOf(bytes);
    GBuffer units;
    if (view.starts_with("\xFE\xFF"sv)) {
        for (std::size_t i = 2; i + 1 < view.size(); i += 2) {
            const char swapped[] = {view[i + 1], view[i]};
            units += BytesOf({swapped, sizeof swapped});
        }
        return GString(units, GUnicodeEncoding::GetInstance());
    }
    const bool isUTF8 = GUTF8Encoding::GetInstance()->ConvertTo(bytes, GUnicodeEncoding::GetInstance(),
                                                                units) == GEncoding::cConverted;
    if (isUTF8) return GString(units, GUnicodeEncoding::GetInstance());
    return GString(bytes, GWinAnsiEncoding::GetInstance());
}

GString TitleIn(std::string_view value) {
    value = value.substr(0, static_cast<std::size_t>(GPostScriptComments::cMaxTitle));
    if (value.starts_with("("sv)) return TextOf(UnquotedString(value));
    if (value.starts_with("<"sv)) return TextOf(UnhexedString(value));
    return TextOf(BytesOf(value));
}

/// Takes comments line by line. What is told twice holds as it was told first in the header, and last in
/// the trailer.
class CommentReader {
public:
    explicit CommentReader(bool inTrailer) : mInTrailer(inTrailer) {}

    void TakeLine(std::string_view line) {
        Take(line, "%%Title:"sv, mTitle);
        Take(line, "%%Pages:"sv, mPages);
        Take(line, "%%Requirements:"sv, mRequirements);
    }
    /// What is not told yet.
    void Complete(GPostScriptComments& comments) const {
        constexpr std::string_view cCopies = "numcopies("sv;
        if (!mTitle.empty() && comments.title.IsEmpty()) comments.title = TitleIn(mTitle);
        if (!mPages.empty() && comments.pages < 0) comments.pages = NumberIn(mPages);
        const std::size_t found = mRequirements.find(cCopies);
        if (found != std::string_view::npos && comments.copies < 0)
            comments.copies = NumberIn(mRequirements.substr(found + cCopies.size()));
    }

private:
    void Take(std::string_view line, std::string_view keyword, std::string_view& value) const {
        if (!line.starts_with(keyword)) return;
        std::string_view told = WithoutFirst(line.substr(keyword.size()), cBlanks);
        told = told.substr(0, told.find_last_not_of(cBlanks) + 1);
        if (!told.empty() && told != "(atend)"sv && (mInTrailer || value.empty())) value = told;
    }

    bool mInTrailer;
    std::string_view mTitle;
    std::string_view mPages;
    std::string_view mRequirements;
};

// The header goes up to its last comment or to the first line that is none. Returns what follows it.
std::string_view TakeHeader(std::string_view document, GPostScriptComments& comments) {
    CommentReader reader(false);
    while (document.starts_with("%"sv)) {
        const std::string_view line = TakeLine(document);
        if (line.starts_with("%%EndComments"sv)) break;
        reader.TakeLine(line);
    }
    reader.Complete(comments);
    return document;
}

// A document inside the document has a trailer of its own, so that only the last one is about the whole.
void TakeTrailer(std::string_view tail, GPostScriptComments& comments) {
    const std::size_t start = tail.rfind("%%Trailer"sv);
    if (start == std::string_view::npos || !IsLineStart(tail, start)) return;
    tail.remove_prefix(start);
    if (FindAtLineStart(tail, "%%EndDocument"sv) != std::string_view::npos) return;
    CommentReader reader(true);
    while (!tail.empty()) reader.TakeLine(TakeLine(tail));
    reader.Complete(comments);
}

std::int32_t FindCopies(std::string_view settings) {
    settings = settings.substr(0, FindAtLineStart(settings, "%%Page:"sv));
    std::size_t last = 0;
    std::int32_t copies = GPostScriptComments::cUnknown;
    for (const std::string_view name : {"/#copies "sv, "/NumCopies "sv}) {
        for (std::size_t found = settings.find(name); found != std::string_view::npos;
             found = settings.find(name, found + 1)) {
            const std::int32_t number = NumberIn(settings.substr(found + name.size()));
            if (number < 0 || found < last) continue;
            last = found;
            copies = number;
        }
    }
    return copies;
}

}  // namespace

GPostScriptComments GPostScriptComments::Read(const GInStream& source) {
    GPostScriptComments comments;
    const Part whole = FindPostScriptPart(source);
    const long long tailLength = std::min(cTail, whole.length);
    const GBuffer tail = Part{whole.start + whole.length - tailLength, tailLength}.ReadFrom(source);
    comments.isComplete = EndsInEOF(ViewOf(tail));
    const GBuffer head = Part{whole.start, std::min(cHead, whole.length)}.ReadFrom(source);
    const auto document = FindDocument(head);
    if (!document) return comments;
    comments.isPostScript = true;
    const std::string_view settings = TakeHeader(*document, comments);
    TakeTrailer(ViewOf(tail), comments);
    if (comments.copies < 0) comments.copies = FindCopies(settings);
    return comments;
}
