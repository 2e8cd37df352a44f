#include "framework/streams/GTypeFinder.h"

#include <algorithm>
#include <cstdint>

using namespace std::string_view_literals;

namespace {

constexpr std::size_t cPDFProbe = 1024;  // readers look for the header so far
constexpr char cEndOfTransmission = '\x04';

struct Signature {
    GTypeEnums::Types type;
    std::string_view bytes;
};

// Looked through in order: the longer of two that begin alike stands first.
constexpr Signature cSignatures[] = {
    {GTypeEnums::cEPS, "\xC5\xD0\xD3\xC6"sv},
    {GTypeEnums::cPNG, "\x89PNG\r\n\x1A\n"sv},
    {GTypeEnums::cJPEG, "\xFF\xD8\xFF"sv},
    {GTypeEnums::cGIF, "GIF87a"sv},
    {GTypeEnums::cGIF, "GIF89a"sv},
    {GTypeEnums::cTIFF, "II*\0"sv},
    {GTypeEnums::cTIFF, "MM\0*"sv},
    {GTypeEnums::cGZip, "\x1F\x8B\x08"sv},
    {GTypeEnums::cDictionary, "#BEGINDICT"sv},
    {GTypeEnums::cPreferences, "#BEGINPREFS"sv},
    {GTypeEnums::cPCL, ") HP-PCL XL"sv},
    {GTypeEnums::cText, "\xEF\xBB\xBF"sv},
    {GTypeEnums::cText, "\xFF\xFE"sv},
    {GTypeEnums::cText, "\xFE\xFF"sv},
};

std::uint32_t NumberAt(std::string_view data, std::size_t position) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(data[position + i - 1]);
    }
    return number;
}

bool Contains(std::string_view data, std::string_view part) {
    return data.find(part) != std::string_view::npos;
}

GTypeEnums::Types FindPostScriptType(std::string_view data) {
    const std::string_view line = data.substr(0, data.find_first_of("\r\n"sv));
    return Contains(line, " EPSF-"sv) ? GTypeEnums::cEPS : GTypeEnums::cPostScript;
}

// Commands for the printer stand first; the language they lead to follows the ENTER line.
GTypeEnums::Types FindPrinterJobType(std::string_view data) {
    const std::size_t document = data.find("%!"sv);
    if (document != std::string_view::npos) return FindPostScriptType(data.substr(document));
    return Contains(data, "%PDF-"sv) ? GTypeEnums::cPDF : GTypeEnums::cPrinterJob;
}

// An escape and a character of a command: a reset, a command of one character or a group of them.
bool IsPCL(std::string_view data) {
    if (data.size() < 2 || data[0] != '\x1B') return false;
    return "E9=&*()%"sv.find(data[1]) != std::string_view::npos;
}

// "BM" alone begins many a text; the header's reserved words and its size field settle it.
bool IsBitmap(std::string_view data) {
    constexpr std::size_t cReserved = 6;
    constexpr std::size_t cHeaderSize = 14;
    if (data.size() < cHeaderSize + 4 || !data.starts_with("BM"sv)) return false;
    if (NumberAt(data, cReserved) != 0) return false;
    const std::uint32_t size = NumberAt(data, cHeaderSize);
    return size == 12 || size == 40 || size == 108 || size == 124;
}

// Version 1.0, the size of the header, and where in it two texts stand, 0 for none. An icon begins with
// the same four bytes.
bool IsEMFSpool(std::string_view data) {
    constexpr std::uint32_t cVersion = 0x10000;
    constexpr std::uint32_t cFixedSize = 16;
    if (data.size() < cFixedSize || NumberAt(data, 0) != cVersion) return false;
    const std::uint32_t size = NumberAt(data, 4);
    const auto isPlace = [&](std::uint32_t place) {
        return place == 0 || (place >= cFixedSize && place < size);
    };
    return size >= cFixedSize && size % 4 == 0 && isPlace(NumberAt(data, 8)) && isPlace(NumberAt(data, 12));
}

// Both are packages of files; the names of the first files tell.
GTypeEnums::Types FindPackageType(std::string_view data) {
    const std::string_view names[] = {".fdseq"sv, ".fdoc"sv, ".fpage"sv, "FixedDoc"sv};
    const bool isXPS =
        std::ranges::any_of(names, [&](std::string_view name) { return Contains(data, name); });
    return isXPS ? GTypeEnums::cXPS : GTypeEnums::cZip;
}

// Text has no control characters but those that place it. Of bytes above ASCII it has few, unless they
// are what UTF-8 is made of.
bool IsText(std::string_view data) {
    std::size_t high = 0;
    std::size_t inSequence = 0;
    std::int32_t following = 0;
    for (const char character : data) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isControl = byte < 0x20 || byte == 0x7F;
        if (isControl && "\b\t\n\f\r\x1A\x04"sv.find(character) == std::string_view::npos) return false;
        if (byte < 0x80) {
            following = 0;
            continue;
        }
        ++high;
        if (byte >= 0xC2 && byte < 0xF5) {
            following = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
            ++inSequence;
        } else if (following > 0 && byte < 0xC0) {
            --following;
            ++inSequence;
        }
    }
    return high == inSequence || high * 4 < data.size();
}

}  // namespace

GTypeEnums::Types GTypeFinder::FindType(std::string_view data) {
    if (data.empty()) return GTypeEnums::cNone;
    const std::size_t start = std::min(data.find_first_not_of(cEndOfTransmission), data.size());
    const std::string_view job = data.substr(start);
    if (job.starts_with("%!"sv)) return FindPostScriptType(job);
    if (job.starts_with("\x1B%-12345X"sv) || job.starts_with("@PJL"sv)) return FindPrinterJobType(job);
    for (const Signature& signature : cSignatures) {
        if (data.starts_with(signature.bytes)) return signature.type;
    }
    if (data.starts_with("PK\x03\x04"sv)) return FindPackageType(data);
    if (IsBitmap(data)) return GTypeEnums::cBMP;
    if (IsEMFSpool(data)) return GTypeEnums::cEMFSpool;
    if (Contains(data.substr(0, cPDFProbe), "%PDF-"sv)) return GTypeEnums::cPDF;
    if (IsPCL(job)) return GTypeEnums::cPCL;
    return IsText(data) ? GTypeEnums::cText : GTypeEnums::cNone;
}
