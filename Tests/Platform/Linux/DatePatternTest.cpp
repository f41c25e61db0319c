#include "Platform/Linux/DatePattern.h"

#include <gtest/gtest.h>

namespace vantor {

TEST(DatePatternTest, TellsAMomentInTheWordsOfALanguage) {
    constexpr double kMoment = 1'425'903'660;  // 2015-03-09 12:21 on the clocks there
    EXPECT_EQ(dateInPattern(kMoment, "EEEE d MMM, h:mm a", "en_US"), "Monday 9 Mar, 12:21 PM");
    EXPECT_EQ(dateInPattern(kMoment, "EEEE d MMM, H:mm", "de"), "Montag 9 März, 12:21");
}

TEST(DatePatternTest, WhatIsNoPatternIsQuiet) {
    EXPECT_EQ(dateInPattern(0, std::string(1000, 'E'), "en_US"), "");
    EXPECT_EQ(dateInPattern(0, "", "en_US"), "");
}

}  // namespace vantor
