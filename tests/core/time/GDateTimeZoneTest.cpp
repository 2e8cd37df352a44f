// Time zones and the locale's formats are known in the native build only: Windows has them of the machine.

#include "framework/core/time/GDateTime.h"
#include "tests/core/TextForTests.h"

TEST(GDateTimeZone, TakesTheDifferenceOfTheLocalZone) {
    const std::tuple<const char*, std::array<long, 3>, long, const char*> rows[] = {
        {"UTC0", {1, 0, 0}, 22, "D:20131231220000Z"},
        {"AAA-1", {1, 1, 0}, 21, "D:20131231220000+01'00'"},
        {"BBB3:30", {-1, 3, 30}, 1, "D:20131231220000-03'30'"},
        {"CCC-12:45", {1, 12, 45}, 9, "D:20131231220000+12'45'"}};
    for (const auto& [name, difference, utcHour, expected] : rows) {
        SCOPED_TRACE(name);
        setenv("TZ", name, 1);
        GDateTime::Initialize();
        std::array<long, 3> found;
        GDateTime::GetLocalToUTCDifference(found[0], found[1], found[2]);
        EXPECT_EQ(found, difference);
        const GDateTime time(31, 12, 2013, 22, 0, 0, false);
        EXPECT_EQ(time.GetHour(), utcHour);
        GBuffer text;
        time.GetAsPDFDateTime(text);
        EXPECT_EQ(BytesOf(text), expected);
        EXPECT_EQ(GDateTime(true).GetOffsetHours(), difference[1]);
    }
    unsetenv("TZ");
    GDateTime::Initialize();
}
