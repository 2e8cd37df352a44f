#pragma once

#include <cstdint>

class GBuffer;

/// GPDFDateReader: the fields of a date string of page-description documents, as they are written;
/// see GDateTime::SetFromPDFDateTime.
class GPDFDateReader {
public:
    /// 0 refused, 1 read, 2 read with a mended year.
    long Read(const GBuffer& text);

    std::int32_t mYear = 2000;
    std::int32_t mMonth = 1;
    std::int32_t mDay = 1;
    std::int32_t mHour = 0;
    std::int32_t mMinute = 0;
    std::int32_t mSecond = 0;
    bool mHasZone = false;
    std::int32_t mRelationToUTC = 0;
    std::int32_t mOffsetHours = 0;
    std::int32_t mOffsetMinutes = 0;

private:
    bool ReadDate(const unsigned char* bytes, const unsigned char* end, bool mendYear);
    void ReadZone(const unsigned char* bytes, const unsigned char* end);
    bool IsInRange() const;
};
