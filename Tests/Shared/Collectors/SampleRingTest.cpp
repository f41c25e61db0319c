#include "Shared/Collectors/SampleRing.h"

#include <deque>
#include <limits>
#include <optional>
#include <random>

#include <gtest/gtest.h>

namespace vantor {
namespace {

void push(SampleRing& ring, double sampleID, double value) {
    PushSamples(ring);
    ring.setSampleID(0, sampleID);
    ring.mutableValues(0)[0] = value;
    ring.setEmpty(0, 0);
}

TEST(SampleRingTest, BeginsWithEmptySlotsOfIdentifierZero) {
    const SampleRing ring(3);
    for (std::size_t position : {std::size_t{0}, SampleRing::kSlots - 1}) {
        EXPECT_EQ(ring.sampleAtIndex(position).empty, 1);
        EXPECT_EQ(ring.sampleAtIndex(position).sampleID, 0);
        EXPECT_EQ(ring.sampleAtIndex(position).values.size(), 3U);
    }
}

TEST(SampleRingTest, PositionZeroIsTheNewest) {
    SampleRing ring(1);
    push(ring, 1, 10);
    push(ring, 2, 20);
    EXPECT_EQ(ring.sampleAtIndex(0).values[0], 20);
    EXPECT_EQ(ring.sampleAtIndex(1).values[0], 10);
}

TEST(SampleRingTest, APushedSlotKeepsTheSampleBeforeItUntilItIsOverwritten) {
    SampleRing ring(1);
    push(ring, 7, 70);
    ring.setTime(0, 700);
    PushSamples(ring);
    const statsample newest = ring.sampleAtIndex(0);
    EXPECT_EQ(newest.sampleID, 7);
    EXPECT_EQ(newest.time, 700);
    EXPECT_EQ(newest.values[0], 70);
    EXPECT_EQ(newest.empty, 0);
}

TEST(SampleRingTest, TheOldestFallsOut) {
    SampleRing ring(1);
    for (int sample = 1; sample <= 603; ++sample)
        push(ring, sample, sample);
    EXPECT_EQ(ring.sampleAtIndex(601).sampleID, 2);
}

TEST(SampleRingTest, ReadsAsIfEverySlotHadMoved) {
    SampleRing ring(1);
    std::deque<double> moved(SampleRing::kSlots, 0.0);
    std::mt19937 random(1);
    for (int step = 0; step < 2000; ++step) {
        moved.push_front(moved.front());  // the copy on push
        moved.pop_back();
        PushSamples(ring);
        if (random() % 3 != 0)
            ring.mutableValues(0)[0] = moved[0] = step;
        if (random() % 5 == 0) {
            const std::size_t position = random() % SampleRing::kSlots;
            ring.mutableValues(position)[0] = moved[position] = -step;
        }
    }
    for (std::size_t position = 0; position < SampleRing::kSlots; ++position)
        ASSERT_EQ(ring.sampleAtIndex(position).values[0], moved[position]) << position;
}

TEST(SampleRingTest, ClearingMayKeepTheTimes) {
    SampleRing ring(1);
    push(ring, 1, 5);
    ring.setTime(0, 1000);
    ring.clear(SampleRing::Times::keep);
    EXPECT_EQ(ring.sampleAtIndex(0).time, 1000);
    EXPECT_EQ(ring.sampleAtIndex(0).sampleID, 0);
    EXPECT_EQ(ring.sampleAtIndex(0).empty, 1);
    EXPECT_EQ(ring.sampleAtIndex(0).values[0], 0);
    ring.clear(SampleRing::Times::clear);
    EXPECT_EQ(ring.sampleAtIndex(0).time, 0);
}

TEST(SampleRingTest, FindsTheNewestOfAnIdentifier) {
    SampleRing ring(1);
    push(ring, 4, 1);
    push(ring, 4, 2);
    push(ring, 5, 3);
    EXPECT_EQ(ring.positionOfIdentifier(4), 1U);
    EXPECT_FALSE(ring.positionOfIdentifier(9));
}

TEST(SampleRingTest, FindsEveryIdentifierWhereverItStands) {
    SampleRing ring(1);
    std::mt19937 random(5);
    double sampleID = 0;
    for (int step = 0; step < 700; ++step) {
        // Most IDs follow each other; some are left out, and some slots are pushed and not yet
        // overwritten.
        sampleID += random() % 20 == 0 ? 3 : 1;
        push(ring, sampleID, 1);
        if (random() % 30 == 0)
            PushSamples(ring);
    }
    for (double wanted = 0; wanted <= sampleID + 1; ++wanted) {
        std::optional<std::size_t> place;
        for (std::size_t position = SampleRing::kSlots; position > 0; --position)
            if (ring.sampleID(position - 1) == wanted)
                place = position - 1;
        ASSERT_EQ(ring.positionOfIdentifier(wanted), place) << wanted;
    }
}

TEST(SampleRingTest, WhatIsNoIdentifierIsFoundNowhere) {
    SampleRing ring(1);
    push(ring, 9, 1);
    for (const double odd : {std::numeric_limits<double>::quiet_NaN(), 8.5, -1.0,
                             std::numeric_limits<double>::infinity(), 1e300, -1e300})
        EXPECT_FALSE(ring.positionOfIdentifier(odd)) << odd;
}

}  // namespace
}  // namespace vantor
