#include "framework/core/GUTF8Encoding.h"

#include <algorithm>
#include <cstring>

#include "framework/core/GCharCode.h"
#include "framework/core/GCodeUnits.h"
#include "framework/core/GEncodingBuffers.h"
#include "framework/core/GEncodingSingleton.h"
#include "framework/core/GUnicodeEncoding.h"

const GBuffer GUTF8Encoding::sDescription = BorrowLiteral("UTF-8Encoding");

namespace {

constinit GEncodingSingleton<GUTF8Encoding> sInstance;

constexpr bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// How far a conversion has come.
struct Progress {
    std::size_t read = 0;
    std::size_t written = 0;
};

// Converts one by one up to `end` or the first invalid byte. A sequence may reach beyond `end`.
Progress ReadSequences(const unsigned char* bytes, std::size_t length, unsigned char* units,
                       Progress progress, std::size_t end) {
    while (progress.read < end) {
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

// Converts a block of 16 bytes or so; false when the place holds none of the kinds that go by blocks.
inline bool ReadBlock(const unsigned char* bytes, unsigned char* units, Progress& progress) {
    const unsigned char* from = bytes + progress.read;
    unsigned char* to = units + 2 * progress.written;
    if (*from < 0x80 && GCodeUnits::WidenBlock(from, to)) {
        progress.read += 16;
        progress.written += 16;
        return true;
    }
    if (*from < 0xE0) return GCodeUnits::ReadMixedBlock(from, to, progress.read, progress.written);
    if (!GCodeUnits::ReadThreeByteBlock(from, to)) return false;
    progress.read += 12;
    progress.written += 4;
    return true;
}

// Reads UTF-8 up to the end or the first invalid byte. There must be room for as many units as there
// are sequences, which is as many as there can be.
Progress ReadUTF8(const unsigned char* bytes, std::size_t length, unsigned char* units, std::size_t room) {
    const std::size_t ascii = GCodeUnits::WidenASCII(bytes, std::min(length, room), units);
    Progress progress{ascii, ascii};
    while (progress.read < length) {
        const bool hasBlock = length - progress.read > 16 && room - progress.written >= 16;
        if (hasBlock && ReadBlock(bytes, units, progress)) continue;
        const std::size_t end = std::min(length, progress.read + 16);
        progress = ReadSequences(bytes, length, units, progress, end);
        if (progress.read < end) break;
    }
    return progress;
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

// Converts a block of 8 or 16 units; false when the place holds none of the kinds that go by blocks.
inline bool WriteBlock(const unsigned char* units, unsigned char* bytes, Progress& progress) {
    const unsigned char* from = units + 2 * progress.read;
    unsigned char* to = bytes + progress.written;
    const std::uint16_t unit = GCodeUnits::Load(from, 0);
    if (unit < 0x80 && GCodeUnits::NarrowBlock(from, to)) {
        progress.read += 16;
        progress.written += 16;
        return true;
    }
    if (unit < 0x800) {
        if (!GCodeUnits::WriteMixedBlock(from, to, progress.written)) return false;
    } else {
        if (!GCodeUnits::WriteThreeByteBlock(from, to)) return false;
        progress.written += 24;
    }
    progress.read += 8;
    return true;
}

// Writes UTF-8 into exactly the room that it takes.
void WriteUTF8(const unsigned char* units, std::size_t count, unsigned char* bytes, std::size_t room) {
    Progress progress;
    while (progress.read < count) {
        const bool hasBlock = count - progress.read >= 16 && room - progress.written >= 32;
        if (hasBlock && WriteBlock(units, bytes, progress)) continue;
        const std::size_t end = std::min(count, progress.read + 8);
        for (; progress.read < end; ++progress.read)
            progress.written += WriteUnit(GCodeUnits::Load(units, progress.read), bytes + progress.written);
    }
}

void WriteUTF8(const GBuffer& utf16, GBuffer& out) {
    const unsigned char* units = utf16.GetRawData();
    const auto count = static_cast<std::size_t>(utf16.GetLength()) / 2;
    // Most texts are ASCII: that is tried before anything is counted.
    GBuffer result = MakeEncodingOutput(static_cast<long>(count));
    const std::size_t ascii = GCodeUnits::NarrowASCII(units, count, result.GetWritePtr());
    if (ascii < count) {
        const std::size_t rest = GCodeUnits::CountUTF8Bytes(units + 2 * ascii, count - ascii);
        result.SetLength(static_cast<long>(ascii));
        result.Allocate(static_cast<long>(ascii + rest));
        result.SetLength(static_cast<long>(ascii + rest));
        WriteUTF8(units + 2 * ascii, count - ascii, result.GetWritePtr() + ascii, rest);
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
    const std::size_t room = GCodeUnits::CountSequences(source, length);
    GBuffer result = MakeEncodingOutput(static_cast<long>(2 * room));
    const Progress progress = ReadUTF8(source, length, result.GetWritePtr(), room);
    result.SetLength(static_cast<long>(2 * progress.written));
    long code = cInvalid;
    if (progress.read == length) {
        const bool hasZero = length != 0 && std::memchr(source, 0, length) != nullptr;
        code = hasZero ? cReplaced : cConverted;
    }
    out = std::move(result);
    return code;
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
