#include "framework/core/time/GDateTime.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <tuple>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/text/GString.h"
#include "framework/core/time/GCalendar.h"
#include "framework/core/time/GDatePicture.h"
#include "framework/core/time/GPDFDateReader.h"
#include "framework/core/time/PTime.h"

namespace {

std::int32_t Saturated(long long value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<long long>(value, Limits::min(), Limits::max()));
}

long long SignOf(std::int32_t value) {
    return value > 0 ? 1 : value < 0 ? -1 : 0;
}

}  // namespace

/// Date and time with room for sums; any values.
struct GDateTime::Fields {
    long long mYear;
    long long mMonth;
    long long mDay;
    long long mHour;
    long long mMinute;
    long long mSecond;

    long long GetSeconds() const { return mHour * 3600 + mMinute * 60 + mSecond; }

    void MoveMonths(long long months) {
        const long long fromYearZero = mYear * 12 + mMonth - 1 + months;
        mYear = GCalendar::FloorDivide(fromYearZero, 12);
        mMonth = GCalendar::FloorModulo(fromYearZero, 12) + 1;
    }

    /// The number of the day that this moment lies in, once months and seconds are carried.
    long long GetDayNumber() const {
        Fields carried = *this;
        carried.MoveMonths(0);
        return GCalendar::ToDayNumber(carried.mYear, carried.mMonth, carried.mDay) +
               GCalendar::FloorDivide(GetSeconds(), GCalendar::cSecondsPerDay);
    }

    long long GetSecondOfDay() const {
        return GCalendar::FloorModulo(GetSeconds(), GCalendar::cSecondsPerDay);
    }

    void Normalize() {
        const long long seconds = GetSecondOfDay();
        const GCalendar::Date date = GCalendar::FromDayNumber(GetDayNumber());
        *this = {date.mYear, date.mMonth, date.mDay, seconds / 3600, seconds / 60 % 60, seconds % 60};
        if (mYear > std::numeric_limits<std::int32_t>::max())
            *this = {std::numeric_limits<std::int32_t>::max(), 12, 31, 23, 59, 59};
        if (mYear < std::numeric_limits<std::int32_t>::min())
            *this = {std::numeric_limits<std::int32_t>::min(), 1, 1, 0, 0, 0};
    }
};

GDateTime::GDateTime(bool now) {
    Set(now);
}

GDateTime::GDateTime(long day, long month, long year, bool utc) {
    Set(day, month, year, utc);
}

GDateTime::GDateTime(long day, long month, long year, long hour, long minute, long second, bool utc) {
    Set(day, month, year, hour, minute, second, utc);
}

GDateTime::GDateTime(long day, long month, long year, long hour, long minute, long second, long relationToUTC,
                     long offsetHours, long offsetMinutes) {
    Set(day, month, year, hour, minute, second, relationToUTC, offsetHours, offsetMinutes);
}

GDateTime::Fields GDateTime::GetFields() const {
    return {mYear, mMonth, mDay, mHour, mMinute, mSecond};
}

void GDateTime::SetDateAndTime(const Fields& fields) {
    mYear = Saturated(fields.mYear);
    mMonth = Saturated(fields.mMonth);
    mDay = Saturated(fields.mDay);
    mHour = Saturated(fields.mHour);
    mMinute = Saturated(fields.mMinute);
    mSecond = Saturated(fields.mSecond);
}

void GDateTime::Set(bool now) {
    Set(1, 1, 1980, 0, 0, 0, 1, 0, 0);
    PCalendarTime time;
    if (!now || !PTime::GetCurrentUTC(time)) return;
    SetDateAndTime({time.mYear, time.mMonth, time.mDay, time.mHour, time.mMinute, time.mSecond});
    SetZoneToLocal();
}

void GDateTime::Set(long day, long month, long year, bool utc) {
    Set(day, month, year, 0, 0, 0, utc);
}

void GDateTime::Set(long day, long month, long year, long hour, long minute, long second, bool utc) {
    SetDateAndTime({year, month, day, hour, minute, second});
    SetZoneToLocal();
    if (!utc) MoveByOffset(-1);
}

void GDateTime::Set(long day, long month, long year, long hour, long minute, long second, long relationToUTC,
                    long offsetHours, long offsetMinutes) {
    SetDateAndTime({year, month, day, hour, minute, second});
    mRelationToUTC = Saturated(relationToUTC);
    mOffsetHours = Saturated(offsetHours);
    mOffsetMinutes = Saturated(offsetMinutes);
}

void GDateTime::SetDate(long day, long month, long year, bool utc) {
    if (!utc) MoveByOffset(1);
    SetDateAndTime({year, month, day, mHour, mMinute, mSecond});
    if (!utc) MoveByOffset(-1);
}

void GDateTime::SetTime(long hour, long minute, long second, bool utc) {
    if (!utc) MoveByOffset(1);
    SetDateAndTime({mYear, mMonth, mDay, hour, minute, second});
    if (!utc) MoveByOffset(-1);
}

void GDateTime::SetAnsiCTm(const std::tm& time, bool utc) {
    SetDateAndTime(
        {time.tm_year + 1900LL, time.tm_mon + 1LL, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec});
    if (!utc) MoveByOffset(-1);
}

void GDateTime::GetAnsiCTm(std::tm& time) const {
    time = {};
    time.tm_year = Saturated(mYear - 1900LL);
    time.tm_mon = Saturated(mMonth - 1LL);
    time.tm_mday = mDay;
    time.tm_hour = mHour;
    time.tm_min = mMinute;
    time.tm_sec = mSecond;
    time.tm_isdst = -1;
    const Fields fields = Normalized().GetFields();
    const long long day = fields.GetDayNumber();
    time.tm_wday = static_cast<int>(GCalendar::GetWeekday(day));
    time.tm_yday = static_cast<int>(day - GCalendar::ToDayNumber(fields.mYear, 1, 1));
}

void GDateTime::Normalize() {
    Fields fields = GetFields();
    fields.Normalize();
    SetDateAndTime(fields);
}

GDateTime GDateTime::Normalized() const {
    GDateTime result = *this;
    result.Normalize();
    return result;
}

/// 1: from UTC to the place; -1: back.
void GDateTime::MoveByOffset(long long direction) {
    Fields fields = GetFields();
    fields.mHour += direction * SignOf(mRelationToUTC) * mOffsetHours;
    fields.mMinute += direction * SignOf(mRelationToUTC) * mOffsetMinutes;
    fields.Normalize();
    SetDateAndTime(fields);
}

void GDateTime::SetZoneToLocal() {
    long relation;
    long hours;
    long minutes;
    GetLocalToUTCDifference(relation, hours, minutes);
    mRelationToUTC = static_cast<std::int32_t>(relation);
    mOffsetHours = static_cast<std::int32_t>(hours);
    mOffsetMinutes = static_cast<std::int32_t>(minutes);
}

void GDateTime::AddDays(long days) {
    AddTime(days, 0, 0, 0, 0, 0);
}

void GDateTime::AddMonths(long months) {
    AddTime(0, 0, 0, 0, months, 0);
}

void GDateTime::AddMonthsClampingDay(long months) {
    Fields fields = GetFields();
    fields.Normalize();
    fields.MoveMonths(Saturated(months));
    fields.mDay = std::min<long long>(fields.mDay, GCalendar::GetDaysInMonth(fields.mYear, fields.mMonth));
    fields.Normalize();
    SetDateAndTime(fields);
}

void GDateTime::AddTime(long days, long hours, long minutes, long seconds, long months, long years) {
    Fields fields = GetFields();
    fields.MoveMonths(Saturated(months) + 12LL * Saturated(years));
    fields.mDay += Saturated(days);
    fields.mHour += Saturated(hours);
    fields.mMinute += Saturated(minutes);
    fields.mSecond += Saturated(seconds);
    fields.Normalize();
    SetDateAndTime(fields);
}

long GDateTime::CompareWith(const GDateTime& other) const {
    const auto ours = std::tie(mYear, mMonth, mDay, mHour, mMinute, mSecond);
    const auto theirs =
        std::tie(other.mYear, other.mMonth, other.mDay, other.mHour, other.mMinute, other.mSecond);
    return ours < theirs ? -1 : theirs < ours ? 1 : 0;
}

long GDateTime::GetDaysBetween(const GDateTime& other) const {
    return Saturated(other.GetFields().GetDayNumber() - GetFields().GetDayNumber());
}

double GDateTime::GetSecondsBetween(const GDateTime& other) const {
    const Fields from = GetFields();
    const Fields to = other.GetFields();
    const long long days = to.GetDayNumber() - from.GetDayNumber();
    return static_cast<double>(days * GCalendar::cSecondsPerDay + to.GetSecondOfDay() -
                               from.GetSecondOfDay());
}

void GDateTime::GetDateAsString(GString& text, bool local, const GString& format) const {
    text = Format(local, format, true);
}

void GDateTime::GetTimeAsString(GString& text, bool local, const GString& format) const {
    text = Format(local, format, false);
}

GString GDateTime::Format(bool local, const GString& format, bool isDate) const {
    GDateTime shown = Normalized();
    if (local) shown.MoveByOffset(1);
    const PCalendarTime time = {shown.mYear, shown.mMonth,  shown.mDay,
                                shown.mHour, shown.mMinute, shown.mSecond};
    if (format.IsEmpty()) {
        GString text;
        if (isDate ? PTime::FormatDate(time, text) : PTime::FormatTime(time, text)) return text;
    }
    const auto weekday = static_cast<std::int32_t>(GCalendar::GetWeekday(shown.GetFields().GetDayNumber()));
    const GString picture = !format.IsEmpty() ? format : GString(isDate ? "yyyy-MM-dd" : "HH:mm:ss");
    return GDatePicture(time, weekday).Write(picture);
}

long GDateTime::SetFromPDFDateTime(const GBuffer& text) {
    GPDFDateReader reader;
    const long result = reader.Read(text);
    if (result == 0) return 0;
    SetDateAndTime({reader.mYear, reader.mMonth, reader.mDay, reader.mHour, reader.mMinute, reader.mSecond});
    if (!reader.mHasZone) {
        Normalize();
        return result;
    }
    mRelationToUTC = reader.mRelationToUTC;
    mOffsetHours = reader.mOffsetHours;
    mOffsetMinutes = reader.mOffsetMinutes;
    MoveByOffset(-1);
    return result;
}

long GDateTime::CheckPDFDateTime(const GBuffer& text) {
    return GDateTime(true).SetFromPDFDateTime(text);
}

void GDateTime::GetAsPDFDateTime(GBuffer& text) const {
    GDateTime local = *this;
    local.MoveByOffset(1);
    // Read as unsigned: a year before 0 becomes a number too long for any reader to take.
    GBuffer date("D:");
    const auto add = [&date](std::int32_t number, long digits) {
        const auto value = static_cast<unsigned long>(static_cast<std::uint32_t>(number));
        const GBuffer decimal(static_cast<long long>(value));
        for (long i = decimal.GetLength(); i < digits; ++i) date += '0';
        date += decimal;
    };
    add(local.mYear, 4);
    for (const std::int32_t number : {local.mMonth, local.mDay, local.mHour, local.mMinute, local.mSecond})
        add(number, 2);
    if (mOffsetHours < 1 && mOffsetMinutes < 1) {
        date += 'Z';
    } else {
        date += mRelationToUTC < 0 ? '-' : '+';
        add(mOffsetHours, 2);
        date += '\'';
        add(mOffsetMinutes, 2);
        date += '\'';
    }
    text = date;
}

unsigned long GDateTime::ElapsedSeconds() {
    return PTime::GetTickCount() / 1000;
}

void GDateTime::GetLocalToUTCDifference(long& relation, long& hours, long& minutes) {
    const std::int32_t offset = PTime::GetUTCOffset();
    relation = offset < 0 ? -1 : 1;
    hours = std::abs(offset) / 60;
    minutes = std::abs(offset) % 60;
}

void GDateTime::TranslateUTCToLocal(long& day, long& month, long& year, long& hour, long& minute,
                                    long& second, long relation, long offsetHours, long offsetMinutes) {
    GDateTime time(day, month, year, hour, minute, second, relation, offsetHours, offsetMinutes);
    time.MoveByOffset(1);
    day = time.mDay;
    month = time.mMonth;
    year = time.mYear;
    hour = time.mHour;
    minute = time.mMinute;
    second = time.mSecond;
}

void GDateTime::Initialize() {
    PTime::Initialize();
}
