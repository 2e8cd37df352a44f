#include "framework/core/time/GCalendar.h"

#include <gtest/gtest.h>

#include <chrono>

TEST(GCalendar, AgreesWithTheStandardLibraryOnEveryDayOf4000Years) {
    using namespace std::chrono;
    const sys_days first = year(-1200) / January / 1;
    const sys_days last = year(2800) / December / 31;
    const std::int64_t offset = GCalendar::ToDayNumber(1970, 1, 1);
    for (sys_days day = first; day <= last; day += days(1)) {
        const year_month_day expected(day);
        const std::int64_t number = day.time_since_epoch().count() + offset;
        const GCalendar::Date date = GCalendar::FromDayNumber(number);
        ASSERT_EQ(date.mYear, static_cast<int>(expected.year()));
        ASSERT_EQ(date.mMonth, static_cast<unsigned>(expected.month()));
        ASSERT_EQ(date.mDay, static_cast<unsigned>(expected.day()));
        ASSERT_EQ(GCalendar::ToDayNumber(date.mYear, date.mMonth, date.mDay), number);
        ASSERT_EQ(GCalendar::GetWeekday(number), weekday(day).c_encoding());
        const year_month_day_last monthEnd(expected.year() / expected.month() / std::chrono::last);
        ASSERT_EQ(GCalendar::GetDaysInMonth(date.mYear, date.mMonth), static_cast<unsigned>(monthEnd.day()));
    }
}
