#include "framework/system/PRegistryData.h"

#include <algorithm>
#include <utility>

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GBufferSupport.h"

namespace {

constexpr long cUnit = 2;    // bytes of one UTF-16 unit
constexpr long cNumber = 4;  // bytes of a number

std::int32_t ToInt32(const unsigned char* bytes) {
    std::uint32_t value = 0;
    for (long i = cNumber; i-- > 0;) value = value << 8 | bytes[i];
    return static_cast<std::int32_t>(value);
}

GString Decode(const GBuffer& bytes, bool wide) {
    if (wide) return GString(bytes, GUnicodeEncoding::GetInstance(), true);
    return GString(bytes, GPlatformEncoding::GetInstance(), true);
}

bool HasOnlyZeros(const GBuffer& bytes) {
    const unsigned char* const data = bytes.GetRawData();
    return std::all_of(data, data + bytes.GetLength(), [](unsigned char byte) { return byte == 0; });
}

// Where the string that begins at `start` ends, in bytes: at its zero, or where the data end.
long FindEnd(const GBuffer& bytes, long start, bool wide) {
    const long zero = wide ? bytes.FindFirstOccurrence(static_cast<unsigned short>(0), start / cUnit)
                           : bytes.FindFirstOccurrence(static_cast<unsigned char>(0), start);
    if (zero < 0) return bytes.GetLength();
    return wide ? zero * cUnit : zero;
}

GTable<GString> SplitStrings(const GBuffer& stored) {
    GTable<GString> strings;
    const bool wide = PRegistryData::IsWideStringTable(stored);
    const long unit = wide ? cUnit : 1;
    const bool isEnded = stored.GetRawData()[stored.GetLength() - 1] == 0;
    // The last zero ends the whole; where there is only one, it ends the last string.
    const long end = stored.GetLength() - (isEnded ? unit : 0);
    for (long start = 0; start < end;) {
        const long stringEnd = FindEnd(stored, start, wide);
        strings.Append(Decode(stored.GetSubBuffer(start, stringEnd - start), wide));
        start = stringEnd + unit;
    }
    return strings;
}

}  // namespace

PRegistryData::PRegistryData(std::uint32_t type, const GBuffer& stored) : mType(type) {
    if (type == cString || type == cExpandableString) {
        mString = DecodeString(stored);
    } else if (type == cStringTable) {
        SetStringTable(stored);
    } else if (type == cInt32 && stored.GetLength() == cNumber) {
        mInt32 = ToInt32(stored.GetRawData());
    } else {
        mBuffer = stored;
    }
}

GString PRegistryData::DecodeString(const GBuffer& stored) {
    const bool wide = stored.GetLength() % cUnit == 0;
    GBuffer text(stored);
    GBufferSupport::StripTrailingZeroes(text, wide);
    return Decode(text, wide);
}

bool PRegistryData::IsWideStringTable(const GBuffer& stored) noexcept {
    const long length = stored.GetLength();
    if (length < 2 * cUnit || length % cUnit != 0) return false;
    const unsigned char* const end = stored.GetRawData() + length;
    return std::all_of(end - 2 * cUnit, end, [](unsigned char byte) { return byte == 0; });
}

void PRegistryData::SetStringTable(const GBuffer& stored) {
    PRegistryData result;
    result.mType = cStringTable;
    if (!HasOnlyZeros(stored)) result.mStrings = SplitStrings(stored);
    *this = std::move(result);
}
