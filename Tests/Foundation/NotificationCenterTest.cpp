#include "Foundation/NotificationCenter.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(NotificationCenterTest, TellsObserversInTheOrderInWhichTheyCame) {
    NotificationCenter center;
    std::string heard;
    const Observation first = center.observe("news", [&](auto&) { heard += "1"; });
    const Observation second = center.observe("news", [&](auto&) { heard += "2"; });
    center.post("news");
    EXPECT_EQ(heard, "12");
}

TEST(NotificationCenterTest, TellsOnlyWhoAskedForThatName) {
    NotificationCenter center;
    int heard = 0;
    const Observation observation = center.observe("news", [&](auto&) { ++heard; });
    center.post("weather");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenterTest, HandsTheDictionaryOver) {
    NotificationCenter center;
    std::string key;
    const Observation observation = center.observe(
        "change", [&](const Notification& change) { key = infoValue(change.info, "key"); });
    center.post("change", {{"key", "TimerFrequency"}});
    EXPECT_EQ(key, "TimerFrequency");
}

TEST(NotificationCenterTest, AnEndedObservationHearsNothing) {
    NotificationCenter center;
    int heard = 0;
    { const Observation observation = center.observe("news", [&](auto&) { ++heard; }); }
    center.post("news");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenterTest, OneThatIsRemovedWhileItIsToldDoesNotHearIt) {
    NotificationCenter center;
    int heard = 0;
    Observation second;
    const Observation first = center.observe("news", [&](auto&) { second.end(); });
    second = center.observe("news", [&](auto&) { ++heard; });
    center.post("news");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenterTest, OneThatIsAddedWhileItIsToldDoesNotHearIt) {
    NotificationCenter center;
    int heard = 0;
    std::vector<Observation> added;
    const Observation first = center.observe("news", [&](auto&) {
        added.push_back(center.observe("news", [&](auto&) { ++heard; }));
    });
    center.post("news");
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenterTest, AnObservationMayOutliveItsCenter) {
    std::optional<NotificationCenter> center(std::in_place);
    Observation observation = center->observe("news", [](auto&) {});
    center.reset();
    observation.end();
    EXPECT_FALSE(observation);
}

TEST(NotificationCenterTest, AMovedObservationEndsOnce) {
    NotificationCenter center;
    int heard = 0;
    Observation first = center.observe("news", [&](auto&) { ++heard; });
    const Observation second = std::move(first);
    first.end();
    center.post("news");
    EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace vantor
