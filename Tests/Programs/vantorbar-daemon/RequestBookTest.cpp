#include "Programs/vantorbar-daemon/RequestBook.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Programs/vantorbar-daemon/CallRate.h"

namespace vantor {
namespace {

using testing::ElementsAre;

TEST(RequestBookTest, RequestRunsUntilItWasStoppedAsOftenAsItWasStarted) {
    RequestBook book;
    ASSERT_TRUE(book.add("a", 1000));
    EXPECT_TRUE(book.start("a", 1));
    EXPECT_FALSE(book.start("a", 1));
    book.stop("a", 1);
    EXPECT_TRUE(book.asks("a", 1));
    book.stop("a", 1);
    EXPECT_FALSE(book.isAsked(1));
}

TEST(RequestBookTest, KeysAndClientsAreCountedApart) {
    RequestBook book;
    for (const char* const client : {"a", "b", "c"})
        ASSERT_TRUE(book.add(client, 1000));
    EXPECT_TRUE(book.start("a", 1));
    EXPECT_TRUE(book.start("b", 2));
    EXPECT_TRUE(book.start("c", 1));
    book.stop("a", 2);
    book.stop("b", 1);
    std::vector<std::string> asking;
    book.forEachAsking(1, [&](const std::string& client) { asking.push_back(client); });
    EXPECT_THAT(asking, ElementsAre("a", "c"));
    EXPECT_TRUE(book.asks("b", 2));
}

TEST(RequestBookTest, StopWithoutAStartIsIgnored) {
    RequestBook book;
    ASSERT_TRUE(book.add("a", 1000));
    book.stop("a", 1);
    EXPECT_TRUE(book.start("a", 1));
    EXPECT_TRUE(book.isAsked(1));
}

TEST(RequestBookTest, WhoLeavesAsksForNothingAnyMore) {
    RequestBook book;
    ASSERT_TRUE(book.add("a", 1000));
    book.start("a", 1);
    book.setHierarchy("a", Hierarchy::combined);
    book.remove("a");
    EXPECT_FALSE(book.isAsked(1));
    EXPECT_TRUE(book.isEmpty());
    ASSERT_TRUE(book.add("a", 1000));
    EXPECT_EQ(book.hierarchy("a"), Hierarchy::separate);
}

TEST(RequestBookTest, StrangersChangeNothing) {
    RequestBook book;
    EXPECT_FALSE(book.start("a", 1));
    book.setHierarchy("a", Hierarchy::combined);
    EXPECT_FALSE(book.isAsked(1));
    EXPECT_EQ(book.hierarchy("a"), Hierarchy::separate);
}

TEST(RequestBookTest, UserHasNoMoreThanEightClients) {
    RequestBook book;
    for (int number = 0; number < 8; ++number)
        EXPECT_TRUE(book.add(std::to_string(number), 1000));
    EXPECT_FALSE(book.add("ninth", 1000));
    EXPECT_FALSE(book.has("ninth"));
    EXPECT_TRUE(book.add("7", 1000)) << "it is in already";
    EXPECT_TRUE(book.add("roots", 0));
    book.remove("3");
    EXPECT_TRUE(book.add("ninth", 1000));
}

TEST(CallRateTest, CallBeyondTheMostInASecondIsOneTooMany) {
    CallRate rate;
    for (int call = 0; call < CallRate::kCallsASecond; ++call)
        EXPECT_TRUE(rate.allow(10 + call * 0.001));
    EXPECT_FALSE(rate.allow(10.9));
    EXPECT_TRUE(rate.allow(11));
}

}  // namespace
}  // namespace vantor
