#include "Foundation/TimeZoneRules.h"

#include <gtest/gtest.h>

#include "Tests/Support/ZoneFiles.h"

namespace vantor {
namespace {

using test::zoneBlock;
using test::zoneFile;

TEST(TimeZoneRulesTest, WithoutAFileItIsGMT) {
    EXPECT_EQ(TimeZoneRules{}.secondsFromGMT(1'425'900'000), 0);
}

TEST(TimeZoneRulesTest, EachTransitionHoldsFromItsTimeOn) {
    const auto rules =
        TimeZoneRules::fromZoneFile(zoneFile({{-100, 1}, {200, 0}}, {-60, 3600}, ""));
    ASSERT_TRUE(rules);
    EXPECT_EQ(rules->secondsFromGMT(-101), -60);
    EXPECT_EQ(rules->secondsFromGMT(-100), 3600);
    EXPECT_EQ(rules->secondsFromGMT(199), 3600);
    EXPECT_EQ(rules->secondsFromGMT(200), -60);
}

TEST(TimeZoneRulesTest, AfterTheLastTransitionTheRuleHolds) {
    const auto rules = TimeZoneRules::fromZoneFile(zoneFile({{100, 0}}, {7200}, "XYZ-3"));
    ASSERT_TRUE(rules);
    EXPECT_EQ(rules->secondsFromGMT(99), 7200);
    EXPECT_EQ(rules->secondsFromGMT(100), 3 * 3600);
}

TEST(TimeZoneRulesTest, AFileOfTheFirstVersionIsRead) {
    const auto rules = TimeZoneRules::fromZoneFile(zoneBlock('\0', 4, {{-5, 1}}, {0, 1800}));
    ASSERT_TRUE(rules);
    EXPECT_EQ(rules->secondsFromGMT(-6), 0);
    EXPECT_EQ(rules->secondsFromGMT(-5), 1800);
}

TEST(TimeZoneRulesTest, WhatIsCutOffIsNoZone) {
    const std::string whole = zoneFile({{-100, 1}, {200, 0}}, {-60, 3600}, "");
    const std::size_t footer = 2;
    for (std::size_t size = 0; size < whole.size() - footer; ++size)
        EXPECT_FALSE(TimeZoneRules::fromZoneFile(whole.substr(0, size))) << size;
}

TEST(TimeZoneRulesTest, WhatContradictsItselfIsNoZone) {
    EXPECT_FALSE(TimeZoneRules::fromZoneFile(zoneFile({{1, 2}}, {0, 60}, "")));
    EXPECT_FALSE(TimeZoneRules::fromZoneFile(zoneFile({{2, 0}, {1, 1}}, {0, 60}, "")));
    EXPECT_FALSE(TimeZoneRules::fromZoneFile(zoneFile({}, {}, "")));
}

}  // namespace
}  // namespace vantor
