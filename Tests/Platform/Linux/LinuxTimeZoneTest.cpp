#include "Platform/Linux/LinuxTimeZone.h"

#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>
#include <time.h>

namespace vantor {
namespace {

/// Sets the environment's time zone, for as long as it lives.
class ZoneInEnvironment {
public:
    explicit ZoneInEnvironment(const char* rule) { setenv("TZ", rule, 1); }
    ~ZoneInEnvironment() {
        unsetenv("TZ");
        tzset();
    }
    ZoneInEnvironment(const ZoneInEnvironment&) = delete;
    ZoneInEnvironment& operator=(const ZoneInEnvironment&) = delete;
};

TEST(LinuxTimeZoneTest, FollowsTheZoneThroughTheYear) {
    const ZoneInEnvironment zone("XYZ-1XYS,M3.5.0,M10.5.0/3");
    EXPECT_EQ(LinuxTimeZone().secondsFromGMT(1'425'900'000), 3600);
    EXPECT_EQ(LinuxTimeZone().secondsFromGMT(1'435'900'000.5), 7200);
}

TEST(LinuxTimeZoneTest, AChangedZoneIsFollowed) {
    const ZoneInEnvironment before("XYZ-1");
    const LinuxTimeZone zone;
    EXPECT_EQ(zone.secondsFromGMT(0), 3600);
    const ZoneInEnvironment after("XYZ-2");
    EXPECT_EQ(zone.secondsFromGMT(0), 7200);
}

TEST(LinuxTimeZoneTest, TimesThatNoCalendarShowsAreAtHomeInGMT) {
    const ZoneInEnvironment zone("XYZ-1");
    EXPECT_EQ(LinuxTimeZone().secondsFromGMT(1e300), 0);
    EXPECT_EQ(LinuxTimeZone().secondsFromGMT(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace vantor
