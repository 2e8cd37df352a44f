#pragma once

/// @file
/// Dates with times of day, and their order.

#include <cstdint>
#include <ctime>

#include "framework/core/GExport.h"

class GBuffer;
class GString;

/// GDateTime: a calendar date and a time of day with the offset from UTC of the place it is for.
///
/// The fields hold UTC; the offset says how far local time is ahead (relation +1) or behind
/// (relation -1) of it, in hours and minutes that are never negative. Relation 0 means that the place
/// is unknown. Where a function takes a flag, true means values in the form the fields have, false
/// means local time, which is moved by the stored offset. 09:30 with +1 and 1:00 is 10:30 o'clock
/// there, and GDateTime(true) is the current local time in just this form.
///
/// Fields are stored as they are given, also impossible ones, until Normalize() is called; values
/// outside 32 bits are cut to the nearest. The calendar is the Gregorian one in all years, year 0
/// and negative ones included. A value type; one thread at a time.
class QUILLON_EXPORT GDateTime {
public:
    /// True: now, with the present difference of the local time zone. False, and when the clock
    /// cannot be read: 1 January 1980, 00:00:00, relation +1 and offset 0:00.
    explicit GDateTime(bool now = false);
    /// The offset is the present difference of the local time zone. Without a time it is 00:00:00.
    GDateTime(long day, long month, long year, bool utc);
    /// The offset is as above.
    GDateTime(long day, long month, long year, long hour, long minute, long second, bool utc);
    /// With an offset of one's own.
    GDateTime(long day, long month, long year, long hour, long minute, long second, long relationToUTC,
              long offsetHours, long offsetMinutes);

    /// As the constructors.
    void Set(bool now);
    ///@{ As the constructors of the same parameters.
    void Set(long day, long month, long year, bool utc);
    void Set(long day, long month, long year, long hour, long minute, long second, bool utc);
    void Set(long day, long month, long year, long hour, long minute, long second, long relationToUTC,
             long offsetHours, long offsetMinutes);
    ///@}
    /// Sets the date and keeps the time of day; with `utc` false, both of them local.
    void SetDate(long day, long month, long year, bool utc);
    /// Sets the time of day and keeps the date; with `utc` false, both of them local.
    void SetTime(long hour, long minute, long second, bool utc);
    /// From the broken-down time of the C library; the offset stays.
    void SetAnsiCTm(const std::tm& time, bool utc);
    /// The fields as they are stored; weekday and day of the year are computed, and whether it is
    /// summer time is left open (-1).
    void GetAnsiCTm(std::tm& time) const;

    long GetDay() const { return mDay; }        ///< 1..31 once normalised
    long GetMonth() const { return mMonth; }    ///< 1..12 once normalised
    long GetYear() const { return mYear; }      ///< of the Gregorian calendar; 0 and below are years before 1
    long GetHour() const { return mHour; }      ///< 0..23 once normalised
    long GetMinute() const { return mMinute; }  ///< 0..59 once normalised
    long GetSecond() const { return mSecond; }  ///< 0..59 once normalised; leap seconds are not known
    /// 1: local time is ahead, -1: behind, 0: unknown.
    long GetRelationToUTC() const { return mRelationToUTC; }
    long GetOffsetHours() const { return mOffsetHours; }      ///< whole hours of the offset
    long GetOffsetMinutes() const { return mOffsetMinutes; }  ///< minutes beyond the hours

    /// The time of day stays. As all adding it ends with Normalize(); negative values go back.
    void AddDays(long days);
    /// A day that the new month does not have is carried: 31 March and 1 month is 1 May.
    void AddMonths(long months);
    /// A day that the new month does not have becomes its last: 31 March and 1 month is 30 April.
    void AddMonthsClampingDay(long months);
    /// Adds to all fields, and carries then.
    void AddTime(long days, long hours, long minutes, long seconds, long months, long years);
    /// Carries every field that is out of range into the next larger one, downwards too: 60 seconds
    /// are a minute, minute -1 is 59 of the hour before, month 13 is January of the next year, and
    /// day 31 of February is 2 or 3 March, day 0 the last of the month before. Where the year leaves
    /// 32 bits, the value becomes the first or last moment of the range.
    void Normalize();

    /// -1, 0 or 1, field by field from the year down. Offsets do not count.
    long CompareWith(const GDateTime& other) const;
    /// Days from this date to the other, negative when that is earlier; times of day do not count.
    long GetDaysBetween(const GDateTime& other) const;
    /// Seconds from this moment to the other, negative when that is earlier.
    double GetSecondsBetween(const GDateTime& other) const;

    ///@{ Text for people. `local` moves the time by the stored offset first. An empty format gives the short
    /// form of the user's locale (ISO 8601 in the native build, and for years that the system does not know).
    /// Otherwise the format is a picture: d and dd (day), ddd and dddd (weekday), M and MM (month), MMM and
    /// MMMM (its name), y and yy (year of the century), yyyy (year), h and hh (1..12), H and HH (0..23), m
    /// and mm, s and ss, t and tt (morning or afternoon). Text in single quotes is copied, two quotes in a
    /// row are one; so is every other character. Both take all letters, so that one picture can hold date and
    /// time.
    void GetDateAsString(GString& text, bool local, const GString& format) const;
    void GetTimeAsString(GString& text, bool local, const GString& format) const;
    ///@}

    /// The date of a PDF document (ISO 32000-1, 7.9.4): reads "D:" (may be missing), YYYYMMDDHHmmSS cut short
    /// after any field but the year, and a zone: "Z", or '+' or '-', hours, ', minutes, '. Fields may have
    /// blanks in front and fewer digits before another character, and what follows the last field is ignored,
    /// all as the scan functions of C read numbers of a given width. Signs belong to the zone alone.
    ///
    /// Returns 0 for a refused text (this object is unchanged), 1 when it was taken, and 2 when the
    /// year was mended: a year that has "91" behind its first digit comes from a producer that wrote
    /// 19 and the years since 1900 ("19100" is 2000); it is read with five digits, less 17100. The
    /// true years 1910 to 1919 fall victim to that. Without a zone, relation and offset stay.
    long SetFromPDFDateTime(const GBuffer& text);
    /// What SetFromPDFDateTime would return.
    static long CheckPDFDateTime(const GBuffer& text);
    /// "D:20140315093000Z", or with a zone local time: "D:20140315103000+01'00'".
    void GetAsPDFDateTime(GBuffer& text) const;

    /// Whole seconds of the system's 32-bit millisecond count: starts again after 49.7 days.
    static unsigned long ElapsedSeconds();
    /// The present difference of the local time zone: relation +1 or -1, hours and minutes.
    static void GetLocalToUTCDifference(long& relation, long& hours, long& minutes);
    /// Moves a UTC date and time to the place with that relation and offset.
    static void TranslateUTCToLocal(long& day, long& month, long& year, long& hour, long& minute,
                                    long& second, long relation, long offsetHours, long offsetMinutes);
    /// Called once at the framework's start.
    static void Initialize();

private:
    struct Fields;
    Fields GetFields() const;
    void SetDateAndTime(const Fields& fields);
    GDateTime Normalized() const;
    void MoveByOffset(long long direction);
    void SetZoneToLocal();
    GString Format(bool local, const GString& format, bool isDate) const;

    std::int32_t mDay = 1;
    std::int32_t mMonth = 1;
    std::int32_t mYear = 1980;
    std::int32_t mHour = 0;
    std::int32_t mMinute = 0;
    std::int32_t mSecond = 0;
    std::int32_t mRelationToUTC = 1;
    std::int32_t mOffsetHours = 0;
    std::int32_t mOffsetMinutes = 0;
};

///@{ The order of GDateTime::CompareWith().
inline bool operator<(const GDateTime& a, const GDateTime& b) {
    return a.CompareWith(b) < 0;
}
inline bool operator<=(const GDateTime& a, const GDateTime& b) {
    return a.CompareWith(b) <= 0;
}
///@}
