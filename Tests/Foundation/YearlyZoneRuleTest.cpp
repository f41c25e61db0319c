#include "Foundation/YearlyZoneRule.h"

#include <string_view>

#include <gtest/gtest.h>

#include "Foundation/CivilTime.h"

namespace vantor {
namespace {

std::int32_t offsetAt(std::string_view rule, const CivilTime& time) {
    const auto read = YearlyZoneRule::fromText(rule);
    EXPECT_TRUE(read) << rule;
    return read ? read->secondsFromGMT(*secondsOf(time)) : -1;
}

constexpr std::string_view kVienna = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr std::string_view kSydney = "AEST-10AEDT,M10.1.0,M4.1.0/3";

TEST(YearlyZoneRuleTest, OneOffsetHoldsForEver) {
    EXPECT_EQ(offsetAt("<+0545>-5:45", {2050, 6, 1}), 5 * 3600 + 45 * 60);
    EXPECT_EQ(offsetAt("EST5", {1950, 1, 1}), -5 * 3600);
}

TEST(YearlyZoneRuleTest, SummerBeginsAndEndsAtItsHour) {
    EXPECT_EQ(offsetAt(kVienna, {2040, 3, 25, 0, 59, 59}), 3600);
    EXPECT_EQ(offsetAt(kVienna, {2040, 3, 25, 1, 0, 0}), 7200);
    EXPECT_EQ(offsetAt(kVienna, {2040, 10, 28, 0, 59, 59}), 7200);
    EXPECT_EQ(offsetAt(kVienna, {2040, 10, 28, 1, 0, 0}), 3600);
}

TEST(YearlyZoneRuleTest, ASouthernSummerGoesOverTheTurnOfTheYear) {
    EXPECT_EQ(offsetAt(kSydney, {2040, 1, 1}), 11 * 3600);
    EXPECT_EQ(offsetAt(kSydney, {2040, 7, 1}), 10 * 3600);
    EXPECT_EQ(offsetAt(kSydney, {2040, 12, 31, 23, 0, 0}), 11 * 3600);
}

TEST(YearlyZoneRuleTest, DaysOfTheYearCountTheLeapDayOrLeaveItOut) {
    // In 2040 both are the 1st of March: day 60 without the leap day, 60 from 0 with it.
    for (const std::string_view rule : {"A0B,J60/0,J300/0", "A0B,60/0,300/0"}) {
        EXPECT_EQ(offsetAt(rule, {2040, 2, 29, 23, 59, 59}), 0) << rule;
        EXPECT_EQ(offsetAt(rule, {2040, 3, 1}), 3600) << rule;
    }
    EXPECT_EQ(offsetAt("A0B,59/0,300/0", {2041, 3, 1}), 3600);
}

TEST(YearlyZoneRuleTest, SummerMayHaveAnyOffsetAndAnyHour) {
    EXPECT_EQ(offsetAt("IST-1GMT0,M10.5.0,M3.5.0/1", {2040, 1, 1}), 0);
    EXPECT_EQ(offsetAt("<-02>2<-01>,M3.5.0/-1,M10.5.0/0", {2040, 3, 25, 0, 59, 59}), -7200);
    EXPECT_EQ(offsetAt("<-02>2<-01>,M3.5.0/-1,M10.5.0/0", {2040, 3, 25, 1, 0, 0}), -3600);
}

TEST(YearlyZoneRuleTest, TimesThatNoCalendarShowsHaveAnOffset) {
    const auto rule = YearlyZoneRule::fromText(kVienna);
    ASSERT_TRUE(rule);
    EXPECT_GE(rule->secondsFromGMT(1'000'000'000'000'000), 3600);
    EXPECT_GE(rule->secondsFromGMT(-1'000'000'000'000'000), 3600);
}

TEST(YearlyZoneRuleTest, WhatIsNoRuleIsNotRead) {
    for (const std::string_view text :
         {"", "CET", "-1", "CET-1CEST", "CET-1CEST,M3.5.0", "CET-1CEST,M13.5.0,M10.5.0",
          "CET-1CEST,M3.6.0,M10.5.0", "CET-1CEST,M3.5.7,M10.5.0", "<CET-1", "CET-200",
          "CET-1CEST,J0,J3", "CET-1CEST,M3.5.0,M10.5.0x", "CET-99999999999999999999"})
        EXPECT_FALSE(YearlyZoneRule::fromText(text)) << text;
}

}  // namespace
}  // namespace vantor
