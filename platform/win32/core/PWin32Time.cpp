#include <iterator>

#include "framework/core/time/PTime.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

bool ToSystemTime(const PCalendarTime& time, SYSTEMTIME& system) {
    constexpr std::int32_t cFirstYear = 1601;
    constexpr std::int32_t cLastYear = 30827;
    if (time.mYear < cFirstYear || time.mYear > cLastYear) return false;
    system = {};
    system.wYear = static_cast<WORD>(time.mYear);
    system.wMonth = static_cast<WORD>(time.mMonth);
    system.wDay = static_cast<WORD>(time.mDay);
    system.wHour = static_cast<WORD>(time.mHour);
    system.wMinute = static_cast<WORD>(time.mMinute);
    system.wSecond = static_cast<WORD>(time.mSecond);
    return true;
}

// More than any locale's short date or time; the functions refuse what does not fit.
constexpr int cMaxText = 128;

/// Takes a text whose length, terminator included, the system has returned; 0: it failed.
bool TakeText(const wchar_t* buffer, int length, GString& text) {
    if (length < 1) return false;
    text = FromWide(buffer, length - 1);
    return true;
}

GString GetUserText(LCTYPE what) {
    wchar_t buffer[cMaxText];
    GString text;
    TakeText(buffer, ::GetLocaleInfoW(LOCALE_USER_DEFAULT, what, buffer, cMaxText), text);
    return text;
}

}  // namespace

void PTime::Initialize() {}

bool PTime::GetCurrentUTC(PCalendarTime& time) {
    SYSTEMTIME utc;
    ::GetSystemTime(&utc);
    time = {utc.wYear, utc.wMonth, utc.wDay, utc.wHour, utc.wMinute, utc.wSecond};
    return true;
}

std::int32_t PTime::GetUTCOffset() {
    TIME_ZONE_INFORMATION zone;
    const DWORD season = ::GetTimeZoneInformation(&zone);
    if (season == TIME_ZONE_ID_INVALID) return 0;
    LONG bias = zone.Bias;
    if (season == TIME_ZONE_ID_DAYLIGHT) bias += zone.DaylightBias;
    if (season == TIME_ZONE_ID_STANDARD) bias += zone.StandardBias;
    return static_cast<std::int32_t>(-bias);
}

std::uint32_t PTime::GetTickCount() {
    return ::GetTickCount();
}

bool PTime::FormatDate(const PCalendarTime& time, GString& text) {
    SYSTEMTIME system;
    if (!ToSystemTime(time, system)) return false;
    wchar_t buffer[cMaxText];
    const int length =
        ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &system, nullptr, buffer, cMaxText);
    return TakeText(buffer, length, text);
}

bool PTime::FormatTime(const PCalendarTime& time, GString& text) {
    SYSTEMTIME system;
    if (!ToSystemTime(time, system)) return false;
    wchar_t buffer[cMaxText];
    const int length = ::GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &system, nullptr, buffer, cMaxText);
    return TakeText(buffer, length, text);
}

GString PTime::GetMonthName(std::int32_t month, bool abbreviated) {
    if (month < 1 || month > 12) return GString();
    const LCTYPE first = abbreviated ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1;
    return GetUserText(first + static_cast<LCTYPE>(month - 1));
}

GString PTime::GetWeekdayName(std::int32_t weekday, bool abbreviated) {
    if (weekday < 0 || weekday > 6) return GString();
    // The system's first day of the week is Monday.
    const LCTYPE first = abbreviated ? LOCALE_SABBREVDAYNAME1 : LOCALE_SDAYNAME1;
    return GetUserText(first + static_cast<LCTYPE>((weekday + 6) % 7));
}

GString PTime::GetDayHalfName(bool afternoon) {
    return GetUserText(afternoon ? LOCALE_S2359 : LOCALE_S1159);
}
