#include "framework/core/time/GDateTime.h"

#include <cstdio>

#include "tests/core/TextForTests.h"

namespace {

constexpr long cMin = INT32_MIN;

/// "year-month-day hour:minute:second" of the stored fields.
std::string When(const GDateTime& time) {
    char text[80];
    std::snprintf(text, sizeof text, "%ld-%ld-%ld %ld:%ld:%ld", time.GetYear(), time.GetMonth(),
                  time.GetDay(), time.GetHour(), time.GetMinute(), time.GetSecond());
    return text;
}

/// The same with " relation/hours:minutes" behind it.
std::string Fields(const GDateTime& time) {
    return When(time) + " " + std::to_string(time.GetRelationToUTC()) + "/" +
           std::to_string(time.GetOffsetHours()) + ":" + std::to_string(time.GetOffsetMinutes());
}

/// The time that When() writes, or with the date alone the start of its day; in UTC.
GDateTime At(std::string_view text) {
    long year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    std::sscanf(text.data(), "%ld-%ld-%ld %ld:%ld:%ld", &year, &month, &day, &hour, &minute, &second);
    return GDateTime(day, month, year, hour, minute, second, 1, 0, 0);
}

std::string PDF(const GDateTime& time) {
    GBuffer text;
    time.GetAsPDFDateTime(text);
    return BytesOf(text);
}

std::u16string Date(const GDateTime& time, bool local, std::u16string_view format) {
    GString text;
    time.GetDateAsString(text, local, Text(format));
    return Plain(text);
}

std::u16string Time(const GDateTime& time, bool local, std::u16string_view format) {
    GString text;
    time.GetTimeAsString(text, local, Text(format));
    return Plain(text);
}

}  // namespace

TEST(GDateTime, IsNowWithTheLocalDifference) {
    const GDateTime now(true);
    EXPECT_GT(now.GetYear(), 2023);
    long relation, hours, minutes;
    GDateTime::GetLocalToUTCDifference(relation, hours, minutes);
    EXPECT_EQ(Fields(now), Fields(GDateTime(now.GetDay(), now.GetMonth(), now.GetYear(), now.GetHour(),
                                            now.GetMinute(), now.GetSecond(), relation, hours, minutes)));
    EXPECT_LT(GDateTime::ElapsedSeconds(), 4294968ul) << "of milliseconds that are counted in 32 bits";
}

TEST(GDateTime, StoresFieldsAsTheyAreGiven) {
    EXPECT_EQ(Fields(GDateTime()), "1980-1-1 0:0:0 1/0:0");
    EXPECT_EQ(Fields(GDateTime(15, 3, 2014, 9, 30, 5, -1, 3, 30)), "2014-3-15 9:30:5 -1/3:30");
    EXPECT_EQ(Fields(GDateTime(31, 2, 2014, 25, -1, 60, 0, 0, 0)), "2014-2-31 25:-1:60 0/0:0");
    GDateTime time;
    time.Set(1, 2, 3, 4, 5, 6, 1, 7, 8);
    time.SetDate(31, 12, 2020, true);
    EXPECT_EQ(Fields(time), "2020-12-31 4:5:6 1/7:8");
    time.SetTime(23, 59, 58, true);
    EXPECT_EQ(Fields(time), "2020-12-31 23:59:58 1/7:8");
    time.Set(false);
    EXPECT_EQ(Fields(time), "1980-1-1 0:0:0 1/0:0");
}

TEST(GDateTime, MovesLocalValuesByTheStoredOffset) {
    const std::tuple<long, long, long, std::string, std::string> rows[] = {
        {0, 1, 0, "2014-3-15 23:30:0", "2014-1-1 0:15:0"},
        {1, 0, 0, "2014-3-15 23:30:0", "2014-1-1 0:15:0"},
        {1, 1, 0, "2014-3-14 23:30:0", "2014-1-1 23:15:0"},
        {-1, 3, 30, "2014-3-15 23:30:0", "2014-1-1 3:45:0"}};
    for (const auto& [relation, hours, minutes, movedDate, movedTime] : rows) {
        GDateTime time(1, 1, 2014, 23, 30, 0, relation, hours, minutes);
        SCOPED_TRACE(Fields(time));
        time.SetDate(15, 3, 2014, false);
        EXPECT_EQ(When(time), movedDate);
        time.Set(1, 1, 2014, 23, 30, 0, relation, hours, minutes);
        time.SetTime(0, 15, 0, false);
        EXPECT_EQ(When(time), movedTime);
    }
    const std::tuple<GDateTime, bool, const char16_t*> made[] = {
        {GDateTime(15, 3, 2014, 10, 30, 0, false), true, u"2014-03-15 10:30"},
        {GDateTime(15, 3, 2014, false), true, u"2014-03-15 00:00"},
        {GDateTime(15, 3, 2014, true), false, u"2014-03-15 00:00"}};
    for (const auto& [time, local, text] : made) EXPECT_EQ(Date(time, local, u"yyyy-MM-dd HH:mm"), text);
}

TEST(GDateTime, ConvertsToAndFromBrokenDownTime) {
    const auto fieldsOf = [](const GDateTime& source) {
        std::tm time = {};
        source.GetAnsiCTm(time);
        return std::vector<int>{time.tm_year, time.tm_mon,  time.tm_mday, time.tm_hour, time.tm_min,
                                time.tm_sec,  time.tm_wday, time.tm_yday, time.tm_isdst};
    };
    EXPECT_EQ(fieldsOf(At("2000-2-29 13:14:15")), std::vector<int>({100, 1, 29, 13, 14, 15, 2, 59, -1}));
    EXPECT_EQ(fieldsOf(At("2014-14-0")), std::vector<int>({114, 13, 0, 0, 0, 0, 6, 30, -1}));
    EXPECT_EQ(fieldsOf(At("-2147483648-1-1")), std::vector<int>({INT32_MIN, 0, 1, 0, 0, 0, 2, 0, -1}));

    std::tm time = {};
    At("2000-2-29 13:14:15").GetAnsiCTm(time);
    GDateTime back(1, 1, 1970, 0, 0, 0, 1, 2, 30);
    back.SetAnsiCTm(time, true);
    EXPECT_EQ(Fields(back), "2000-2-29 13:14:15 1/2:30");
    back.SetAnsiCTm(time, false);
    EXPECT_EQ(Fields(back), "2000-2-29 10:44:15 1/2:30");
    time.tm_year = INT32_MAX;
    back.SetAnsiCTm(time, true);
    EXPECT_EQ(back.GetYear(), INT32_MAX);
}

TEST(GDateTime, NormalizesByCarrying) {
    ForEachRow<2>(
        {"2014-12-31 23:59:60 -> 2015-1-1 0:0:0", "2015-1-1 0:0:-1 -> 2014-12-31 23:59:59",
         "2014-1-1 49:0:0 -> 2014-1-3 1:0:0", "2014-2-31 -> 2014-3-3 0:0:0", "2016-2-31 -> 2016-3-2 0:0:0",
         "1900-2-29 -> 1900-3-1 0:0:0", "2000-2-29 -> 2000-2-29 0:0:0", "2014-3-0 -> 2014-2-28 0:0:0",
         "2014-1--364 -> 2013-1-1 0:0:0", "2014-13-1 -> 2015-1-1 0:0:0", "2014-0-1 -> 2013-12-1 0:0:0",
         "2014--11-31 -> 2013-1-31 0:0:0", "0-1-0 -> -1-12-31 0:0:0",
         "2000-2147483647-2147483647 2147483647:2147483647:2147483647 -> 185087715-11-27 12:21:7",
         "2147483647-12-30 24:0:0 -> 2147483647-12-31 0:0:0", "-2147483648-2-0 -> -2147483648-1-31 0:0:0",
         "2147483647-12-31 24:0:0 -> 2147483647-12-31 23:59:59", "-2147483648-1-0 -> -2147483648-1-1 0:0:0"},
        [&](auto start, auto result) {
            GDateTime time = At(start);
            time.Normalize();
            EXPECT_EQ(When(time), result);
        });
}

TEST(GDateTime, AddsToAllFieldsAndCarriesThen) {
    // Added are days, hours, minutes, seconds, months, years.
    ForEachRow<2>(
        {"2014-3-31 + 0 0 0 0 1 0 -> 2014-5-1 0:0:0", "2014-1-31 + 0 0 0 0 1 0 -> 2014-3-3 0:0:0",
         "2016-2-29 + 0 0 0 0 0 1 -> 2017-3-1 0:0:0", "2014-3-31 + 0 0 0 0 -1 0 -> 2014-3-3 0:0:0",
         "2014-1-15 + 0 0 0 0 -13 0 -> 2012-12-15 0:0:0", "2014-2-31 + 0 0 0 0 1 0 -> 2014-3-31 0:0:0",
         "2014-1-31 + 1 0 0 0 1 0 -> 2014-3-4 0:0:0",
         "2014-1-1 + 0 0 0 0 2147483647 0 -> 178958984-8-1 0:0:0",
         "2015-2-28 23:59:59 + 0 0 0 1 0 0 -> 2015-3-1 0:0:0", "2015-3-1 + 1 2 3 4 5 6 -> 2021-8-2 2:3:4",
         "2021-8-2 2:3:4 + -1 -2 -3 -4 -5 -6 -> 2015-3-1 0:0:0",
         "2015-3-1 + 0 0 0 2147483647 0 0 -> 2083-3-19 3:14:7",
         "2015-3-1 + 2147483647 2147483647 2147483647 2147483647 2147483647 2147483647 -> 2147483647-12-31 "
         "23:59:59",
         "-2147483648-3-1 + -2147483648 -2147483648 -2147483648 -2147483648 0 0 -> -2147483648-1-1 0:0:0"},
        [&](auto sum, auto result) {
            GDateTime time = At(sum);
            long span[6] = {};
            std::sscanf(sum.substr(sum.find('+') + 1).data(), "%ld %ld %ld %ld %ld %ld", &span[0], &span[1],
                        &span[2], &span[3], &span[4], &span[5]);
            time.AddTime(span[0], span[1], span[2], span[3], span[4], span[5]);
            EXPECT_EQ(When(time), result);
        });
    GDateTime time = At("2015-12-31 23:59:59");
    time.AddDays(60);
    time.AddMonths(-12);
    EXPECT_EQ(When(time), "2015-3-1 23:59:59");
}

TEST(GDateTime, AddsMonthsUpToTheLastDayWhenAskedTo) {
    ForEachRow<3>(
        {"2014-3-31 1:2:3 -> 1 -> 2014-4-30 1:2:3", "2014-1-31 -> 1 -> 2014-2-28 0:0:0",
         "2016-1-31 -> 1 -> 2016-2-29 0:0:0", "2016-2-29 -> 12 -> 2017-2-28 0:0:0",
         "2014-3-31 -> -1 -> 2014-2-28 0:0:0", "2014-1-15 -> -13 -> 2012-12-15 0:0:0",
         "2014-2-31 -> 1 -> 2014-4-3 0:0:0", "2147483647-12-31 -> 2147483647 -> 2147483647-12-31 23:59:59"},
        [](auto start, auto months, auto result) {
            GDateTime time = At(start);
            time.AddMonthsClampingDay(std::atol(months.data()));
            EXPECT_EQ(When(time), result);
        });
}

TEST(GDateTime, ComparesFieldByFieldWithoutTheOffset) {
    const GDateTime time = At("2014-3-15 9:30:5");
    for (const char* text : {"2015-1-1 0:0:0", "2014-4-1 0:0:0", "2014-3-16 0:0:0", "2014-3-15 10:0:0",
                             "2014-3-15 9:31:0", "2014-3-15 9:30:6"}) {
        SCOPED_TRACE(text);
        const GDateTime later = At(text);
        EXPECT_EQ(time.CompareWith(later), -1);
        EXPECT_EQ(later.CompareWith(time), 1);
        EXPECT_TRUE(time < later && time <= later);
        EXPECT_FALSE(later < time || later <= time);
    }
    const GDateTime elsewhere(15, 3, 2014, 9, 30, 5, -1, 8, 0);
    EXPECT_TRUE(time.CompareWith(elsewhere) == 0 && time <= elsewhere && !(time < elsewhere));
}

TEST(GDateTime, CountsDaysAndSecondsBetween) {
    ForEachRow<4>({"2014-1-1 23:59:59 -> 2014-1-2 -> 1 -> 1", "2000-1-1 -> 2001-1-1 -> 366 -> 31622400",
                   "2000-3-1 -> 1600-3-1 -> -146097 -> -12622780800",
                   "-2147483648-1-1 -> 2147483647-12-31 -> 2147483647 -> 135536076801417600",
                   "2147483647-12-31 -> -2147483648-1-1 -> -2147483648 -> -135536076801417600"},
                  [](auto from, auto to, auto days, auto seconds) {
                      EXPECT_EQ(At(from).GetDaysBetween(At(to)), std::atol(days.data()));
                      EXPECT_EQ(At(from).GetSecondsBetween(At(to)), std::atof(seconds.data()));
                  });
}

TEST(GDateTime, ReadsPDFDates) {
    // A text, the result and the fields; without a zone the place stays.
    ForEachRow<3>(
        {"D:20140315103000+01'00' -> 1 -> 2014-3-15 9:30:0 1/1:0",
         "D:20140315103000-03'30' -> 1 -> 2014-3-15 14:0:0 -1/3:30",
         "D:20140101003000+01'00' -> 1 -> 2013-12-31 23:30:0 1/1:0",
         "D:20140315103000Z00'00' -> 1 -> 2014-3-15 10:30:0 1/0:0", "D:2014Z -> 1 -> 2014-1-1 0:0:0 1/0:0",
         "D:20140315103000+01 -> 1 -> 2014-3-15 9:30:0 1/1:0",
         "D:20140315103000+01'30 -> 1 -> 2014-3-15 9:0:0 1/1:30",
         "D:20140315103000+0130 -> 1 -> 2014-3-15 9:30:0 1/1:0",
         "D:20140315103000+ -> 1 -> 2014-3-15 10:30:0 1/0:0",
         "D:20140315103000+-1'00' -> 1 -> 2014-3-15 10:30:0 1/0:0",
         "D:20000229235959+14'45' -> 1 -> 2000-2-29 9:14:59 1/14:45",
         "D:20140315103000+99'99' -> 1 -> 2014-3-11 5:51:0 1/99:99", "D:201Z -> 1 -> 201-1-1 0:0:0 1/0:0",
         "20140315 -> 1 -> 2014-3-15 0:0:0 -1/5:45", "D:2014 -> 1 -> 2014-1-1 0:0:0 -1/5:45",
         "D:201403151030 -> 1 -> 2014-3-15 10:30:0 -1/5:45", "D:20140231 -> 1 -> 2014-3-3 0:0:0 -1/5:45",
         "D:2014031510300099 -> 1 -> 2014-3-15 10:30:0 -1/5:45", "D:2014 3 5 -> 1 -> 2014-3-5 0:0:0 -1/5:45",
         "D: 2014\t03 -> 1 -> 2014-3-1 0:0:0 -1/5:45", "D:20143x -> 1 -> 2014-3-1 0:0:0 -1/5:45",
         "D:0000 -> 1 -> 0-1-1 0:0:0 -1/5:45", "D:9999123123595900 -> 1 -> 9999-12-31 23:59:59 -1/5:45",
         // Years that were counted wrongly.
         "D:19100 -> 2 -> 2000-1-1 0:0:0 -1/5:45", "D:19150101 -> 2 -> 2050-10-1 0:0:0 -1/5:45",
         "D:1910 -> 2 -> -15190-1-1 0:0:0 -1/5:45",
         "D:191140315103000+01'00' -> 2 -> 2014-3-15 9:30:0 1/1:0"},
        [](auto text, auto result, auto fields) {
            GDateTime time(1, 1, 1970, 0, 0, 0, -1, 5, 45);
            EXPECT_EQ(time.SetFromPDFDateTime(BufferOf(text)), result[0] - '0');
            EXPECT_EQ(GDateTime::CheckPDFDateTime(BufferOf(text)), result[0] - '0');
            EXPECT_EQ(Fields(time), fields);
        });
}

TEST(GDateTime, RefusesOtherTextsAndStaysUnchanged) {
    for (const std::string_view text :
         {""sv, "D"sv, "D:"sv, "D:201"sv, "D:20Z"sv, "D:20+1'00'"sv, "D-2014"sv, "X:2014"sv, "D:abcd"sv,
          "D:    "sv, "D:-2014"sv,
          // What is no month, day, hour, minute or second.
          "D:201400"sv, "D:20200"sv, "D:20141301"sv, "D:20140300"sv, "D:20140332"sv, "D:2014031524"sv,
          "D:201403151060"sv, "D:20140315103060"sv, "\0002014"sv}) {
        GDateTime time(2, 3, 1970, 4, 5, 6, -1, 5, 45);
        EXPECT_EQ(time.SetFromPDFDateTime(BufferOf(text)), 0) << text;
        EXPECT_EQ(GDateTime::CheckPDFDateTime(BufferOf(text)), 0) << text;
        EXPECT_EQ(Fields(time), "1970-3-2 4:5:6 -1/5:45");
    }
}

TEST(GDateTime, WritesPDFDates) {
    const std::pair<GDateTime, std::string> rows[] = {
        {At("2014-3-15 9:30:0"), "D:20140315093000Z"},
        {GDateTime(15, 3, 2014, 9, 30, 0, 1, 1, 0), "D:20140315103000+01'00'"},
        {GDateTime(15, 3, 2014, 14, 0, 0, -1, 3, 30), "D:20140315103000-03'30'"},
        {GDateTime(31, 12, 2013, 23, 45, 0, 1, 0, 30), "D:20140101001500+00'30'"},
        {GDateTime(15, 3, 2014, 9, 30, 0, 0, 1, 0), "D:20140315093000+01'00'"},
        {GDateTime(15, 3, 2014, 9, 30, 0, 0, 0, 0), "D:20140315093000Z"},
        {At("1-2-3 4:5:6"), "D:00010203040506Z"},
        {At("12345-1-1"), "D:123450101000000Z"},
        {At("-1-1-1"), "D:42949672950101000000Z"}};
    for (const auto& [time, text] : rows) EXPECT_EQ(PDF(time), text) << text;
    EXPECT_EQ(PDF(GDateTime(15, 3, 2014, 10, 30, 0, false)).substr(0, 16), "D:20140315103000");
    EXPECT_EQ(PDF(GDateTime(1, 1, cMin, cMin, cMin, cMin, cMin, cMin, cMin)).substr(0, 2), "D:");
}

TEST(GDateTime, WritesPictures) {
    const GDateTime time(5, 3, 2014, 15, 4, 9, 1, 1, 0);
    ForEachRow<2>({u"yyyy-MM-dd HH:mm:ss -> 2014-03-05 15:04:09", u"d.M.yy H:m:s -> 5.3.14 15:4:9",
                   u"dd/MM/y hh h -> 05/03/14 03 3", u"yyyyyy yyy HHH -> 2014 2014 15",
                   u"'day' d 'o''clock' -> day 5 o'clock", u"''yyyy'' -> '2014'", u"'open d -> open d",
                   u"' -> ", u"Q4 [yyyy] -> Q4 [2014]", u"\u5E74yyyy\U0001F600 -> \u5E742014\U0001F600"},
                  [&](auto picture, auto text) {
                      EXPECT_EQ(Date(time, false, picture), text);
                      EXPECT_EQ(Time(time, false, picture), text);
                  });
    EXPECT_EQ(Date(time, true, u"dd HH:mm"), u"05 16:04");
    EXPECT_EQ(Date(At("2014-3-5 0:0:0"), false, u"hh") + Date(At("2014-3-5 12:0:0"), false, u"h"), u"1212");
    EXPECT_EQ(Date(At("2014-2-31"), false, u"dd.MM."), u"03.03.");
    EXPECT_EQ(Date(At("-44-3-15"), false, u"yyyy yy"), u"-0044 44");
}

TEST(GDateTime, WritesNamesInTheUsersLanguage) {
    const GDateTime noon = At("2014-3-5 12:0:0");
    const std::u16string full = Date(noon, false, u"MMMM dddd"), half = Date(noon, false, u"tt");
    EXPECT_GT(full.size(), Date(noon, false, u"MMM ddd").size());
    EXPECT_NE(full, Date(At("2014-4-5"), false, u"MMMM dddd"));
    EXPECT_EQ(Date(noon, false, u"t"), half.substr(0, 1));
    EXPECT_NE(Date(At("2014-3-5 11:59:59"), false, u"tt"), half);
    // And without a picture in his short form, where the system has one.
    EXPECT_NE(Date(noon, false, u"").find(u"14"), std::u16string::npos);
    EXPECT_NE(Time(At("2014-3-5 1:47:0"), false, u"").find(u"47"), std::u16string::npos);
    EXPECT_EQ(Date(At("30828-3-5"), false, u""), u"30828-03-05");
    EXPECT_EQ(Date(At("1600-12-31"), false, u""), u"1600-12-31");
    EXPECT_EQ(Date(At("0-12-31"), false, u""), u"0000-12-31");
    EXPECT_EQ(Time(At("1-3-5 6:7:8"), false, u""), u"06:07:08");
}

TEST(GDateTime, TranslatesUTCToLocal) {
    const auto translated = [](std::vector<long> t, long relation, long hours, long minutes) {
        GDateTime::TranslateUTCToLocal(t[0], t[1], t[2], t[3], t[4], t[5], relation, hours, minutes);
        return t;
    };
    using Times = std::vector<long>;
    EXPECT_EQ(translated({31, 12, 2013, 23, 45, 1}, 1, 5, 30), Times({1, 1, 2014, 5, 15, 1}));
    EXPECT_EQ(translated({1, 1, 2014, 5, 15, 1}, -1, 5, 30), Times({31, 12, 2013, 23, 45, 1}));
    EXPECT_EQ(translated({1, 1, 2014, 5, 15, 1}, 1, 14, 45), Times({1, 1, 2014, 20, 0, 1}));
    EXPECT_EQ(translated({1, 1, 2014, 5, 15, 1}, 0, 14, 45), Times({1, 1, 2014, 5, 15, 1}));
    EXPECT_EQ(translated({1, 1, 2000, 0, 0, 3}, 1, INT32_MAX, INT32_MAX), Times({1, 11, 251066, 9, 7, 3}));
}
