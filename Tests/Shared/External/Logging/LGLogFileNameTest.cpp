#include "Shared/External/Logging/LGLogFileName.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

constexpr std::int64_t kTime = 1'425'909'900;  // 2015-03-09 14:05

TEST(LGLogFileNameTest, NamesTheApplicationAndTheMinuteInGMT) {
    EXPECT_EQ(textOf({kTime}, "vantorbar"), "vantorbar 2015-03-09 14-05.log");
    EXPECT_EQ(textOf({kTime + 59}, "vantorbar"), "vantorbar 2015-03-09 14-05.log");
    EXPECT_EQ(textOf({kTime, 2}, "vantorbar"), "vantorbar 2015-03-09 14-05 2.log");
}

TEST(LGLogFileNameTest, ANameIsReadBack) {
    EXPECT_EQ(logFileName("vantorbar 2015-03-09 14-05.log", "vantorbar"), (LGLogFileName{kTime}));
    EXPECT_EQ(logFileName("a b 2015-03-09 14-05 12.log", "a b"), (LGLogFileName{kTime, 12}));
    EXPECT_EQ(logFileName(" 2015-03-09 14-05.log", ""), (LGLogFileName{kTime}));
}

TEST(LGLogFileNameTest, ALaterAttemptComesAfterAnEarlierOne) {
    EXPECT_LT((LGLogFileName{kTime, 2}), (LGLogFileName{kTime, 10}));
    EXPECT_LT((LGLogFileName{kTime, 10}), (LGLogFileName{kTime + 60, 1}));
}

TEST(LGLogFileNameTest, OtherNamesAreNot) {
    for (const char* const name :
         {"", "vantorbar.log", "vantorbar 2015-03-09 14-05.txt", "other 2015-03-09 14-05.log",
          "vantorbar 2015-03-09 14-0.log", "vantorbar 2015-02-30 14-05.log",
          "vantorbar 2015-03-09 24-05.log", "vantorbar 2015-03-09 14-05 2 3.log",
          "vantorbar 2015-03-09-14-05.log", "vantorbar 2015-03-09 14:05.log",
          "vantorbar notes of yesterday.log", "vantorbar  2015-03-09 14-05.log",
          "vantorbar 2015-03-09 14-05.log.log", "vantorbar 2015-03-0914-05    .log"})
        EXPECT_FALSE(logFileName(name, "vantorbar")) << name;
}

}  // namespace
}  // namespace vantor
