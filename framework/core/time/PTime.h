#pragma once

#include <cstdint>

#include "framework/core/text/GString.h"

/// A date and time of day in the calendar of all clocks (Gregorian): month 1..12, day 1..31.
struct PCalendarTime {
    std::int32_t mYear = 0;    ///< Gregorian
    std::int32_t mMonth = 0;   ///< 1..12
    std::int32_t mDay = 0;     ///< 1..31
    std::int32_t mHour = 0;    ///< 0..23
    std::int32_t mMinute = 0;  ///< 0..59
    std::int32_t mSecond = 0;  ///< 0..59
};

/// PTime: the system's clocks, and how the user writes dates. Safe on any thread.
class PTime {
public:
    /// Reads the time zone of the process where the system does not do so by itself.
    static void Initialize();

    /// The current time in UTC; false, and `time` unchanged, when the clock cannot be read.
    static bool GetCurrentUTC(PCalendarTime& time);
    /// Minutes by which local time is ahead of UTC now, summer time included; negative west.
    static std::int32_t GetUTCOffset();
    /// Milliseconds since some moment, wrapping at 32 bits.
    static std::uint32_t GetTickCount();

    ///@{ The date or time of day as the user's locale writes it in short. False, and `text` unchanged, for a
    /// year that the system cannot write, and in the native build, which has no locale.
    static bool FormatDate(const PCalendarTime& time, GString& text);
    static bool FormatTime(const PCalendarTime& time, GString& text);
    ///@}
    ///@{ Names in the user's language, English in the native build; month 1..12, weekday 0 (Sunday)..6.
    static GString GetMonthName(std::int32_t month, bool abbreviated);
    static GString GetWeekdayName(std::int32_t weekday, bool abbreviated);
    ///@}
    /// "AM" or "PM" in the user's language.
    static GString GetDayHalfName(bool afternoon);
};
