#include "Shared/Platforms/SensorRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SensorRecordTest, RecordIsADictionaryWithFourKeys) {
    const SensorRecord sensor{"TC0D", "CPU Die - Analog", 10, 105};
    const PropertyValue::Dictionary expected{
        {"key", "TC0D"}, {"name", "CPU Die - Analog"}, {"low", 10.0}, {"high", 105.0}};
    EXPECT_EQ(sensor.dictionary(), expected);
}

TEST(SensorRecordTest, FullListKeepsTheOrderOfDisplay) {
    const auto sensors = sensorRecordsOf("MacBookPro8,2");
    ASSERT_EQ(sensors.size(), 41u);
    EXPECT_EQ(sensors.front().key, "ID0R");
    EXPECT_EQ(sensors.front().high, 4.85);
    EXPECT_EQ(sensors[2].name, "CPU (Core, GFX, DDR3, 1.05V, VCCSA)");
    EXPECT_EQ(sensors.back().key, "Leftside");
    EXPECT_EQ(sensors.back().low, 2000);
}

TEST(SensorRecordTest, OtherListsAreEmpty) {
    EXPECT_THAT(sensorRecordsOf("MacBookPro8,1"), IsEmpty());
    EXPECT_THAT(sensorRecordsOf(""), IsEmpty());
}

TEST(SensorRecordTest, DieOfTheProcessorIsShownByDefault) {
    EXPECT_THAT(defaultSensorKeysOf(sensorRecordsOf("MacBookPro8,2")), ElementsAre("TC0D"));
}

TEST(SensorRecordTest, WithoutADieAnyTemperatureOfTheProcessorIs) {
    const SensorRecord sensors[] = {{"IC0C", "CPU Die Current"},
                                    {"TG0D", "GPU Die"},
                                    {"TC0P", "CPU Proximity"},
                                    {"TC0H", "CPU Heatsink"}};
    EXPECT_THAT(defaultSensorKeysOf(sensors), ElementsAre("TC0P"));
}

TEST(SensorRecordTest, WithoutAnyThereIsNone) {
    const SensorRecord sensors[] = {{"IC0C", "CPU Core"}, {"TG0D", "GPU Die"}};
    EXPECT_THAT(defaultSensorKeysOf(sensors), IsEmpty());
    EXPECT_THAT(defaultSensorKeysOf({}), IsEmpty());
}

}  // namespace
}  // namespace vantor
