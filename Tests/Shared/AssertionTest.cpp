#include "Shared/Assertion.h"

#include <gtest/gtest.h>

#include "Tests/Support/SQLWorld.h"

namespace vantor {
namespace {

TEST(AssertionDeathTest, TheWordsAndThePlaceAreTheLastThatIsWritten) {
    test::ShownLog log;
    EXPECT_DEATH(failAssertion(log, "1 == 2"), "AssertionTest.cpp:[0-9]+: 1 == 2");
}

TEST(AssertionDeathTest, APlaceWithoutAFileIsUnknown) {
    test::ShownLog log;
    EXPECT_DEATH(failAssertion(log, "1 == 2", std::source_location()), "<Unknown File>:0: 1 == 2");
}

}  // namespace
}  // namespace vantor
