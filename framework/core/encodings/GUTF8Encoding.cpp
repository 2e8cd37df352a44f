#include "framework/core/encodings/GUTF8Encoding.h"

#include <algorithm>
#include <cstring>

#include "framework/core/bytes/GCharCode.h"
#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GUTF8Blocks.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/memory/GReplaceable.h"

constinit const GBuffer GUTF8Encoding::sDescription(cLiteral<"UTF-8Encoding">);

namespace {

using Progress = GUTF8Blocks::Progress;

constinit GReplaceable<GUTF8Encoding> sInstance;

constexpr bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// Reads UTF-8 up to the end or the first invalid byte. There must be room for as many units as there
// are sequences, which is as many as there can be.
Progress ReadUTF8(const unsigned char* bytes, std::size_t length, unsigned char* units, std::size_t room) {
    Progress progress = GUTF8Blocks::Read(bytes, length, units, room);
    while (progress.read < length) {
        const unsigned char* sequence = bytes + progress.read;
        const std::size_t left = length - progress.read;
        int unit = sequence[0];
        std::size_t used = 1;
        if (unit >= 0x80) {
            if ((unit & 0xE0) == 0xC0 && left >= 2 && IsContinuation(sequence[1])) {
                unit = (unit & 0x1F) << 6 | (sequence[1] & 0x3F);
                used = 2;
            } else if ((unit & 0xF0) == 0xE0 && left >= 3 && IsContinuation(sequence[1]) &&
                       IsContinuation(sequence[2])) {
                unit = (unit & 0x0F) << 12 | (sequence[1] & 0x3F) << 6 | (sequence[2] & 0x3F);
                used = 3;
            } else {
                break;
            }
        }
        GCodeUnits::Store(units, progress.written++, static_cast<std::uint16_t>(unit));
        progress.read += used;
    }
    return progress;
}

struct ReadText {
    GBuffer utf16;  // of an invalid text, what stands before the first invalid byte
    bool isValid = true;
    bool hasZero = false;
};

// Goes on behind `ascii` bytes that have been read already. The result has just the room that it takes.
void ReadMixed(const unsigned char* bytes, std::size_t length, std::size_t ascii, ReadText& text) {
    const std::size_t room = GCodeUnits::CountSequences(bytes + ascii, length - ascii);
    GBuffer mixed = MakeEncodingOutput(2 * (ascii + room));
    if (ascii != 0) std::memcpy(mixed.GetWritePtr(), text.utf16.GetRawData(), 2 * ascii);
    unsigned char* const rest = mixed.GetWritePtr() + 2 * ascii;
    const Progress progress = ReadUTF8(bytes + ascii, length - ascii, rest, room);
    mixed.SetLength(static_cast<long>(2 * (ascii + progress.written)));
    text.utf16 = std::move(mixed);
    text.isValid = ascii + progress.read == length;
    text.hasZero = std::memchr(bytes + ascii, 0, length - ascii) != nullptr;
}

// Most texts are ASCII without a zero: that is tried before anything is counted.
void ReadUTF8(const unsigned char* bytes, std::size_t length, ReadText& text) {
    // What is too long for a buffer as ASCII may be short enough as another text.
    const std::size_t tried = std::min(length, std::size_t{GBuffer::cMaxLength} / 2);
    text.utf16 = MakeEncodingOutput(2 * tried);
    const std::size_t ascii = GCodeUnits::WidenASCII(bytes, tried, text.utf16.GetWritePtr(), 1);
    if (ascii < length) ReadMixed(bytes, length, ascii, text);
}

// Writes one unit; returns how many bytes that took.
std::size_t WriteUnit(std::uint16_t unit, unsigned char* bytes) {
    if (unit < 0x80) {
        bytes[0] = static_cast<unsigned char>(unit);
        return 1;
    }
    const auto last = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    if (unit < 0x800) {
        bytes[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
        bytes[1] = last;
        return 2;
    }
    bytes[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
    bytes[1] = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
    bytes[2] = last;
    return 3;
}

// Writes UTF-8 into exactly the room that it takes.
void WriteUTF8(const unsigned char* units, std::size_t count, unsigned char* bytes, std::size_t room) {
    Progress progress = GUTF8Blocks::Write(units, count, bytes, room);
    for (; progress.read < count; ++progress.read)
        progress.written += WriteUnit(GCodeUnits::Load(units, progress.read), bytes + progress.written);
}

void WriteUTF8(const GBuffer& utf16, GBuffer& out) {
    const unsigned char* units = utf16.GetRawData();
    const auto count = static_cast<std::size_t>(utf16.GetLength()) / 2;
    // Most texts are ASCII: that is tried before anything is counted.
    GBuffer result = MakeEncodingOutput(count);
    const std::size_t ascii = GCodeUnits::NarrowASCII(units, count, result.GetWritePtr());
    if (ascii < count) {
        const unsigned char* rest = units + 2 * ascii;
        const std::size_t room = GCodeUnits::CountUTF8Bytes(rest, count - ascii);
        GBuffer longer = MakeEncodingOutput(ascii + room);
        if (ascii != 0) std::memcpy(longer.GetWritePtr(), result.GetRawData(), ascii);
        WriteUTF8(rest, count - ascii, longer.GetWritePtr() + ascii, room);
        result = std::move(longer);
    }
    out = std::move(result);
}

}  // namespace

GUTF8Encoding* GUTF8Encoding::GetInstance() {
    return sInstance.Get([] { return new GUTF8Encoding; });
}

void GUTF8Encoding::SetInstance(GUTF8Encoding* instance) {
    sInstance.Set(instance);
}

long GUTF8Encoding::ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const {
    if (source == nullptr) {
        out.Clear();
        return cConverted;
    }
    const GUnicodeEncoding* unicode = GUnicodeEncoding::GetInstance();
    if (source == unicode && bytes.GetLength() % 2 == 0) {
        WriteUTF8(bytes, out);
        return cConverted;
    }
    GBuffer utf16;
    const long result = source->ConvertTo(bytes, unicode, utf16);
    if (result == cConverted || result == cReplaced)
        WriteUTF8(utf16, out);
    else
        out.Clear();
    return result;
}

long GUTF8Encoding::ConvertTo(const GBuffer& bytes, const GUnicodeEncoding*, GBuffer& out) const {
    const unsigned char* source = bytes.GetRawData();
    const auto length = static_cast<std::size_t>(bytes.GetLength());
    ReadText text;
    ReadUTF8(source, length, text);
    out = std::move(text.utf16);
    if (!text.isValid) return cInvalid;
    return text.hasZero ? cReplaced : cConverted;
}

bool GUTF8Encoding::GetGlyphName(const GCharCode& code, GBuffer& name) const {
    GBuffer utf16;
    if (ConvertTo(GBuffer(code.GetPtr(), code.GetLength()), GUnicodeEncoding::GetInstance(), utf16) ==
        cInvalid)
        return false;
    return GUnicodeEncoding::GetInstance()->GetGlyphName(GCharCode(utf16.GetRawData(), utf16.GetLength()),
                                                         name);
}

bool GUTF8Encoding::GetCharCode(const GBuffer& glyphName, GCharCode& code) const {
    GCharCode unicode;
    if (!GUnicodeEncoding::GetInstance()->GetCharCode(glyphName, unicode)) return false;
    GBuffer bytes;
    WriteUTF8(GBuffer(unicode.GetPtr(), unicode.GetLength()), bytes);
    code = GCharCode(bytes.GetRawData(), bytes.GetLength());
    return true;
}

const GBuffer& GUTF8Encoding::GetASCIIDescription() const {
    return sDescription;
}
