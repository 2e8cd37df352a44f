#pragma once

#include "framework/core/text/GString.h"
#include "framework/core/time/PTime.h"

/// GDatePicture: writes a date and time as a picture such as "dddd, d. MMMM yyyy HH:mm" shows; see
/// GDateTime::GetDateAsString.
class GDatePicture {
public:
    /// The fields of `time` are in range, `weekday` counts from 0, Sunday.
    GDatePicture(const PCalendarTime& time, std::int32_t weekday) : mTime(time), mWeekday(weekday) {}
    GString Write(const GString& picture) const;

private:
    /// What a run of one letter stands for; false for a letter without a meaning.
    bool AddField(GString& text, unsigned short letter, long count) const;
    void AddYear(GString& text, long count) const;
    void AddDayHalf(GString& text, long count) const;

    PCalendarTime mTime;
    std::int32_t mWeekday;
};
