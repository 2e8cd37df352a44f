#include <ctime>

#include "framework/core/time/PTime.h"

namespace {

GString PickName(const char* const names[], std::int32_t index, std::int32_t count, bool abbreviated) {
    if (index < 0 || index >= count) return GString();
    const GString name(names[index]);
    return abbreviated ? name.GetSubstring(0, 3) : name;
}

}  // namespace

void PTime::Initialize() {
    tzset();
}

bool PTime::GetCurrentUTC(PCalendarTime& time) {
    const std::time_t now = std::time(nullptr);
    std::tm utc;
    if (now == static_cast<std::time_t>(-1) || gmtime_r(&now, &utc) == nullptr) return false;
    time = {utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec};
    return true;
}

std::int32_t PTime::GetUTCOffset() {
    const std::time_t now = std::time(nullptr);
    std::tm local;
    if (localtime_r(&now, &local) == nullptr) return 0;
    return static_cast<std::int32_t>(local.tm_gmtoff / 60);
}

std::uint32_t PTime::GetTickCount() {
    timespec now;
    if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return 0;
    return static_cast<std::uint32_t>(now.tv_sec) * 1000U + static_cast<std::uint32_t>(now.tv_nsec / 1000000);
}

bool PTime::FormatDate(const PCalendarTime&, GString&) {
    return false;
}

bool PTime::FormatTime(const PCalendarTime&, GString&) {
    return false;
}

GString PTime::GetMonthName(std::int32_t month, bool abbreviated) {
    static constexpr const char* cNames[] = {"January",   "February", "March",    "April",
                                             "May",       "June",     "July",     "August",
                                             "September", "October",  "November", "December"};
    return PickName(cNames, month - 1, 12, abbreviated);
}

GString PTime::GetWeekdayName(std::int32_t weekday, bool abbreviated) {
    static constexpr const char* cNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                             "Thursday", "Friday", "Saturday"};
    return PickName(cNames, weekday, 7, abbreviated);
}

GString PTime::GetDayHalfName(bool afternoon) {
    return GString(afternoon ? "PM" : "AM");
}
