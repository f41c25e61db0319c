#include "Foundation/CivilTime.h"

#include <limits>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(CivilTimeTest, ShowsAMomentInGMT) {
    EXPECT_EQ(civilTime(1'425'909'900.25), (CivilTime{2015, 3, 9, 14, 5, 0, 250}));
}

TEST(CivilTimeTest, ShowsAMomentElsewhere) {
    EXPECT_EQ(civilTime(1'425'909'900, 3600), (CivilTime{2015, 3, 9, 15, 5, 0, 0}));
    EXPECT_EQ(civilTime(0, -3600), (CivilTime{1969, 12, 31, 23, 0, 0, 0}));
}

TEST(CivilTimeTest, AMillisecondThatADoubleOnlyNearlyHoldsIsShown) {
    for (unsigned millisecond = 0; millisecond < 1000; ++millisecond)
        EXPECT_EQ(civilTime(1'425'900'000 + millisecond / 1000.0).millisecond, millisecond);
}

TEST(CivilTimeTest, FractionsOfAMillisecondAreCutOff) {
    EXPECT_EQ(civilTime(1'425'900'000.9999).millisecond, 999U);
}

TEST(CivilTimeTest, TimesBeyondTheCalendarComeOutAsItsEnds) {
    EXPECT_EQ(civilTime(1e300).year, 9999);
    EXPECT_EQ(civilTime(-1e300).year, 1);
    EXPECT_EQ(civilTime(std::numeric_limits<double>::quiet_NaN()).year, 1970);
}

TEST(CivilTimeTest, ADateLeadsBackToItsTime) {
    EXPECT_EQ(secondsOf({2015, 3, 9, 14, 5}), 1'425'909'900);
    EXPECT_EQ(secondsOf({2016, 2, 29}), 1'456'704'000);
}

TEST(CivilTimeTest, DaysAndTimesThatThereAreNotLeadNowhere) {
    for (const CivilTime& none :
         {CivilTime{2015, 2, 29}, CivilTime{2015, 13, 1}, CivilTime{2015, 0, 1},
          CivilTime{2015, 1, 0}, CivilTime{2015, 1, 1, 24}, CivilTime{2015, 1, 1, 0, 60}})
        EXPECT_EQ(secondsOf(none), std::nullopt);
}

TEST(CivilTimeTest, AWeekMayBelongToAnotherYear) {
    EXPECT_EQ(weekYear({2014, 12, 28}), 2014);  // a Sunday
    EXPECT_EQ(weekYear({2014, 12, 29}), 2015);
    EXPECT_EQ(weekYear({2016, 1, 3}), 2015);
    EXPECT_EQ(weekYear({2015, 7, 1}), 2015);
}

}  // namespace
}  // namespace vantor
