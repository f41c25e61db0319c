#include "Shared/External/Logging/DLog.h"

#include <gtest/gtest.h>

#include "Tests/Support/World.h"

namespace vantor {
namespace {

TEST(DLogTest, ALineBearsItsStamp) {
    test::World world;
    testing::internal::CaptureStdout();
    DLog("{} of {}", 1, "two");
    SQLLog("select 1");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "2015-03-09 11:20:00.000: 1 of two\n2015-03-09 11:20:00.000: select 1\n");
}

TEST(DLogTest, TheStampBearsTheYearOfTheWeek) {
    test::World world(1'419'854'400);  // Monday, 2014-12-29
    testing::internal::CaptureStdout();
    DLog("text");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "2015-12-29 12:00:00.000: text\n");
}

}  // namespace
}  // namespace vantor
