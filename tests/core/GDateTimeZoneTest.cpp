// Time zones can be had at will in the native build only: Windows keeps one for the machine.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "framework/core/GBuffer.h"
#include "framework/core/GDateTime.h"
#include "tests/core/TestText.h"

namespace {

class InZone {
public:
    explicit InZone(const char* zone) {
        setenv("TZ", zone, 1);
        GDateTime::Initialize();
    }
    ~InZone() {
        unsetenv("TZ");
        GDateTime::Initialize();
    }
};

}  // namespace

TEST(GDateTimeZone, KnowsTheLocalDifference) {
    const struct {
        const char* zone;
        long relation, hours, minutes;
    } rows[] = {{"UTC0", 1, 0, 0}, {"AAA-1", 1, 1, 0}, {"BBB3:30", -1, 3, 30}, {"CCC-12:45", 1, 12, 45}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.zone);
        const InZone zone(row.zone);
        long relation;
        long hours;
        long minutes;
        GDateTime::GetLocalToUTCDifference(relation, hours, minutes);
        EXPECT_EQ(relation, row.relation);
        EXPECT_EQ(hours, row.hours);
        EXPECT_EQ(minutes, row.minutes);
    }
}

TEST(GDateTimeZone, TakesLocalTimeToUTC) {
    const InZone zone("BBB3:30");
    const GDateTime time(31, 12, 2013, 22, 0, 0, false);
    EXPECT_EQ(time.GetDay(), 1);
    EXPECT_EQ(time.GetHour(), 1);
    EXPECT_EQ(time.GetMinute(), 30);
    GBuffer text;
    time.GetAsPDFDateTime(text);
    EXPECT_STREQ(text.GetPtr(), "D:20131231220000-03'30'");
}

TEST(GDateTimeZone, ShowsNowInLocalTime) {
    const InZone zone("AAA-5");
    const GDateTime now(true);
    GString local;
    now.GetTimeAsString(local, true, GString("HH"));
    EXPECT_EQ(local.GetInt32(), (now.GetHour() + 5) % 24);
    EXPECT_EQ(now.GetOffsetHours(), 5);
}
