#include "framework/core/GUTF8Encoding.h"

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

// Reads UTF-8 into room for one unit per sequence, which is as many as there can be.
class UTF8Reader {
public:
    UTF8Reader(const unsigned char* bytes, std::size_t length, unsigned char* units, std::size_t room)
        : mBytes(bytes), mLength(length), mUnits(units), mRoom(room) {}

    /// False at the first invalid byte.
    bool Read() {
        while (mPosition < mLength) {
            if (mBytes[mPosition] < 0x80)
                ReadASCII();
            else if (!ReadSequence())
                return false;
        }
        return true;
    }
    std::size_t GetUnitCount() const { return mCount; }

private:
    void ReadASCII() {
        const std::size_t run = GCodeUnits::WidenASCII(mBytes + mPosition, mLength - mPosition,
                                                       mUnits + 2 * mCount, mRoom - mCount);
        mPosition += run;
        mCount += run;
    }

    bool ReadSequence() {
        const unsigned char* bytes = mBytes + mPosition;
        const std::size_t left = mLength - mPosition;
        if ((bytes[0] & 0xF0) == 0xE0 && left >= 3 && IsContinuation(bytes[1]) && IsContinuation(bytes[2])) {
            Append((bytes[0] & 0x0F) << 12 | (bytes[1] & 0x3F) << 6 | (bytes[2] & 0x3F));
            mPosition += 3;
            return true;
        }
        if ((bytes[0] & 0xE0) == 0xC0 && left >= 2 && IsContinuation(bytes[1])) {
            Append((bytes[0] & 0x1F) << 6 | (bytes[1] & 0x3F));
            mPosition += 2;
            return true;
        }
        return false;
    }

    void Append(int unit) { GCodeUnits::Store(mUnits, mCount++, static_cast<std::uint16_t>(unit)); }

    const unsigned char* mBytes;
    std::size_t mLength;
    unsigned char* mUnits;
    std::size_t mRoom;
    std::size_t mPosition = 0;
    std::size_t mCount = 0;
};

// Writes one unit of 0x80 or more; returns how many bytes that took.
std::size_t WriteSequence(std::uint16_t unit, unsigned char* bytes) {
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

void WriteUTF8(const GBuffer& utf16, GBuffer& out) {
    const unsigned char* units = utf16.GetRawData();
    const auto count = static_cast<std::size_t>(utf16.GetLength()) / 2;
    const std::size_t length = GCodeUnits::CountUTF8Bytes(units, count);
    GBuffer result = MakeEncodingOutput(static_cast<long>(length));
    unsigned char* bytes = result.GetWritePtr();
    std::size_t written = 0;
    for (std::size_t i = 0; i < count;) {
        const std::uint16_t unit = GCodeUnits::Load(units, i);
        if (unit < 0x80) {
            const std::size_t run =
                GCodeUnits::NarrowASCII(units + 2 * i, count - i, bytes + written, length - written);
            i += run;
            written += run;
        } else {
            written += WriteSequence(unit, bytes + written);
            ++i;
        }
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
    GBuffer utf16;
    const long result = source->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16);
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
    UTF8Reader reader(source, length, result.GetWritePtr(), room);
    long code = cInvalid;
    if (reader.Read())
        code = length != 0 && std::memchr(source, 0, length) != nullptr ? cReplaced : cConverted;
    result.SetLength(static_cast<long>(2 * reader.GetUnitCount()));
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
