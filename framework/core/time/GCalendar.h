#pragma once

#include <cstdint>

/// GCalendar: the Gregorian calendar in all years, as numbers of days. Day 0 is 1 March of year 0.
///
/// Years are those of 32-bit fields and what adding 32-bit numbers of months or days to them gives;
/// 64 bits never overflow.
struct GCalendar {
    static constexpr std::int64_t cSecondsPerDay = 86400;

    static constexpr std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) noexcept {
        return value / divisor - (value % divisor < 0 ? 1 : 0);
    }
    static constexpr std::int64_t FloorModulo(std::int64_t value, std::int64_t divisor) noexcept {
        return value - FloorDivide(value, divisor) * divisor;
    }

    /// `month` 1..12; `day` may be any number, counted from the first of the month.
    static constexpr std::int64_t ToDayNumber(std::int64_t year, std::int64_t month,
                                              std::int64_t day) noexcept {
        // Years that start in March have the leap day at their end. Five months from March on have
        // 153 days, and so have the next five.
        const std::int64_t shifted = month > 2 ? year : year - 1;
        const std::int64_t monthFromMarch = month > 2 ? month - 3 : month + 9;
        return shifted * 365 + FloorDivide(shifted, 4) - FloorDivide(shifted, 100) +
               FloorDivide(shifted, 400) + (153 * monthFromMarch + 2) / 5 + day - 1;
    }

    struct Date {
        std::int64_t mYear;
        std::int64_t mMonth;
        std::int64_t mDay;
    };

    static constexpr Date FromDayNumber(std::int64_t dayNumber) noexcept {
        constexpr std::int64_t cDaysIn400Years = 146097;
        // The day belongs to the estimated year from March or to the one after.
        std::int64_t year = FloorDivide(dayNumber * 400, cDaysIn400Years) - 1;
        while (ToDayNumber(year + 1, 3, 1) <= dayNumber) ++year;
        const std::int64_t dayOfYear = dayNumber - ToDayNumber(year, 3, 1);
        const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
        const std::int64_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
        return monthFromMarch < 10 ? Date{year, monthFromMarch + 3, day}
                                   : Date{year + 1, monthFromMarch - 9, day};
    }

    static constexpr bool IsLeapYear(std::int64_t year) noexcept {
        return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    }
    static constexpr std::int64_t GetDaysInMonth(std::int64_t year, std::int64_t month) noexcept {
        if (month == 2) return IsLeapYear(year) ? 29 : 28;
        return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    }
    /// 0: Sunday. Day 0 is a Wednesday.
    static constexpr std::int64_t GetWeekday(std::int64_t dayNumber) noexcept {
        return FloorModulo(dayNumber + 3, 7);
    }
};
