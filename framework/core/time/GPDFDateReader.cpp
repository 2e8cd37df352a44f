#include "framework/core/time/GPDFDateReader.h"

#include <algorithm>

#include "framework/core/bytes/GBuffer.h"

namespace {

/// Reads numbers of limited width the way C's scan functions do, without their signs.
class NumberScanner {
public:
    NumberScanner(const unsigned char* bytes, const unsigned char* end) : mNext(bytes), mEnd(end) {}

    /// False, and `number` unchanged, when no digit follows.
    bool ReadNumber(long width, std::int32_t& number) {
        while (mNext != mEnd && (*mNext == ' ' || (*mNext >= '\t' && *mNext <= '\r'))) ++mNext;
        const unsigned char* const first = mNext;
        std::int32_t value = 0;
        for (; mNext != mEnd && mNext - first < width && *mNext >= '0' && *mNext <= '9'; ++mNext)
            value = value * 10 + (*mNext - '0');
        if (mNext == first) return false;
        number = value;
        return true;
    }

    bool ReadByte(char byte) {
        if (mNext == mEnd || *mNext != static_cast<unsigned char>(byte)) return false;
        ++mNext;
        return true;
    }

private:
    const unsigned char* mNext;
    const unsigned char* mEnd;
};

bool StartsZone(unsigned char byte) {
    return byte == '+' || byte == '-' || byte == 'Z';
}

}  // namespace

long GPDFDateReader::Read(const GBuffer& text) {
    const unsigned char* bytes = text.GetRawData();
    if (bytes == nullptr) return 0;
    const unsigned char* const end = bytes + text.GetLength();
    if (end - bytes >= 2 && bytes[0] == 'D') {
        if (bytes[1] != ':') return 0;
        bytes += 2;
    }
    if (end - bytes < 4) return 0;
    const unsigned char* const zone = std::find_if(bytes, end, StartsZone);
    if (zone - bytes < 3) return 0;

    const bool mendYear = bytes[1] == '9' && bytes[2] == '1';
    if (!ReadDate(bytes, zone, mendYear) || !IsInRange()) return 0;
    if (zone != end) ReadZone(zone, end);
    return mendYear ? 2 : 1;
}

bool GPDFDateReader::ReadDate(const unsigned char* bytes, const unsigned char* end, bool mendYear) {
    NumberScanner scanner(bytes, end);
    if (!scanner.ReadNumber(mendYear ? 5 : 4, mYear)) return false;
    if (mendYear) mYear -= 17100;
    for (std::int32_t* const field : {&mMonth, &mDay, &mHour, &mMinute, &mSecond})
        if (!scanner.ReadNumber(2, *field)) break;
    return true;
}

bool GPDFDateReader::IsInRange() const {
    return mDay >= 1 && mDay <= 31 && mMonth >= 1 && mMonth <= 12 && mHour < 24 && mMinute < 60 &&
           mSecond < 60;
}

void GPDFDateReader::ReadZone(const unsigned char* bytes, const unsigned char* end) {
    mHasZone = true;
    mRelationToUTC = *bytes == '-' ? -1 : 1;
    if (*bytes == 'Z') return;
    NumberScanner scanner(bytes + 1, end);
    if (scanner.ReadNumber(2, mOffsetHours) && scanner.ReadByte('\'')) scanner.ReadNumber(2, mOffsetMinutes);
}
