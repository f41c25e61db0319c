#include "Shared/VTRFormatters.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "Shared/VTRPreferenceFunctions.h"
#include "Tests/Support/DecimalCommas.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

/// Without tables, each unit is its key.
class VTRFormattersTest : public ::testing::Test {
protected:
    static void setDataFormat(int format) { VTRSetIntegerForKey("Network_DataFormat", format); }
    static void setDecimals(int level) { VTRSetIntegerForKey("Network_DecimalLevel", level); }
    static void setTemperatures(int mode) { VTRSetIntegerForKey("Sensors_TemperatureMode", mode); }

    test::World world;
};

struct Case {
    double figure;
    std::string_view text;
};

TEST_F(VTRFormattersTest, DiskActivityGoesFromKilobytesToGigabytes) {
    const std::vector<Case> cases{{-2048, "-2KB/s"},
                                  {0, "0KB/s"},
                                  {512, "0KB/s"},
                                  {1024, "1KB/s"},
                                  {1'024'000, "1000KB/s"},
                                  {1'024'001, "1.0MB/s"},
                                  {104'752'742, "99.9MB/s"},
                                  {104'857'600, "100MB/s"},
                                  {1'048'576'000, "1000MB/s"},
                                  {1'048'576'001, "1.0GB/s"},
                                  {5e12, "4656.6GB/s"}};
    for (const auto& [figure, text] : cases)
        EXPECT_EQ(formattedDiskActivity(figure), text) << figure;
}

TEST_F(VTRFormattersTest, BandwidthTakesTheDecimalsOfTheSettingsOnlyForItsBaseUnit) {
    setDataFormat(0);
    setDecimals(1);
    const std::vector<Case> cases{{-3, "-3.0B/s"},
                                  {0, "0.0B/s"},
                                  {512, "512.0B/s"},
                                  {1010, "1010.0B/s"},
                                  {1024, "1024.0B/s"},
                                  {1025, "1.00 KB/s"},
                                  {1'048'576, "1024.00 KB/s"},
                                  {1'048'577, "1.00 MB/s"},
                                  {1'073'741'824, "1024.00 MB/s"},
                                  {1'073'741'825, "1.00 GB/s"}};
    for (const auto& [figure, text] : cases)
        EXPECT_EQ(formattedBandwidth(false, figure), text) << figure;
}

TEST_F(VTRFormattersTest, BandwidthByDecimalLevelChangesUnitsEarlier) {
    setDataFormat(0);
    setDecimals(1);
    const std::vector<Case> cases{{1000, "1000.0B/s"},           {1010, "1.0KB/s"},
                                  {1'024'000, "1000.0KB/s"},     {1'024'001, "1.0MB/s"},
                                  {1'048'576'000, "1000.0MB/s"}, {1'048'576'001, "1.0GB/s"}};
    for (const auto& [figure, text] : cases)
        EXPECT_EQ(formattedBandwidth(true, figure), text) << figure;
}

TEST_F(VTRFormattersTest, DataFormatChoosesTheFamilyAndItsSmallestUnit) {
    setDecimals(2);
    struct Shown {
        int format;
        std::string_view plain, byLevel;
    };
    for (const auto& [format, plain, byLevel] :
         {Shown{0, "512.00B/s", "512.00B/s"}, Shown{1, "0.50 KB/s", "0.50KB/s"},
          Shown{2, "4.00 Kb/s", "4.00Kb/s"}, Shown{3, "4.00 Kb/s", "4.00Kb/s"},
          Shown{4, "0.00 MB/s", "0.00MB/s"}, Shown{5, "0.00 Mb/s", "0.00Mb/s"},
          Shown{6, "0.50 KB/s", "0.50KB/s"}, Shown{-1, "0.50 KB/s", "0.50KB/s"}}) {
        setDataFormat(format);
        EXPECT_EQ(formattedBandwidth(false, 512), plain) << format;
        EXPECT_EQ(formattedBandwidth(true, 512), byLevel) << format;
    }
}

TEST_F(VTRFormattersTest, BitsHaveABaseUnitToo) {
    setDataFormat(2);
    setDecimals(0);
    EXPECT_EQ(formattedBandwidth(false, 128), "1024b/s");
    EXPECT_EQ(formattedBandwidth(true, 125), "1000b/s");
    EXPECT_EQ(formattedBandwidth(true, 126), "1Kb/s");
}

TEST_F(VTRFormattersTest, DecimalLevelGivesTheFormat) {
    for (const auto& [level, format] : {std::pair{0, "%.0f%@"}, std::pair{1, "%.1f%@"},
                                        std::pair{2, "%.2f%@"}, std::pair{-1, "%.2f%@"}}) {
        setDecimals(level);
        EXPECT_EQ(bandwidhFormatter(), format) << level;
    }
}

TEST_F(VTRFormattersTest, MemoryGoesFromKilobytesToGigabytes) {
    const std::vector<Case> cases{{-5000, "-5000KB"},    {0, "0KB"},
                                  {999, "999KB"},        {999.9, "999KB"},
                                  {1000, "1MB"},         {1536, "2MB"},
                                  {1'048'575, "1024MB"}, {1'048'576, "1.00GB"},
                                  {1'572'864, "1.50GB"}, {16'777'216, "16.00GB"}};
    for (const auto& [figure, text] : cases)
        EXPECT_EQ(formattedMemory(figure), text) << figure;
}

TEST_F(VTRFormattersTest, MemoryIsComputedInSinglePrecision) {
    // In double precision it would be "131072.01GB".
    EXPECT_EQ(formattedMemory(131'072.0 * 1'048'576 + 5243), "131072.00GB");
}

TEST_F(VTRFormattersTest, SpaceIsShownInDecimalUnits) {
    const std::vector<Case> cases{{-1, "-1049KB"},
                                  {0, "0KB"},
                                  {0.5, "524KB"},
                                  {1, "1.0MB"},
                                  {953.67431640625, "1000.0MB"},
                                  {953.68, "1.0GB"},
                                  {953'674.31640625, "1000.0GB"},
                                  {953'680, "1.0TB"},
                                  {2'000'000, "2.1TB"}};
    for (const auto& [figure, text] : cases)
        EXPECT_EQ(formattedSpace(figure), text) << figure;
}

TEST_F(VTRFormattersTest, TemperaturesAreThoseOfTheMode) {
    struct Shown {
        int mode;
        double celsius;
        std::string_view value, unit;
    };
    for (const auto& [mode, celsius, value, unit] :
         {Shown{0, 100, "100", "\u00B0"}, Shown{1, 100, "212", "\u00B0"}, Shown{2, 100, "373", "K"},
          Shown{3, 36.6, "37", "\u00B0"}, Shown{1, 0, "32", "\u00B0"}, Shown{2, 0, "273", "K"},
          Shown{1, 37, "99", "\u00B0"}}) {
        setTemperatures(mode);
        EXPECT_EQ(temperatureValue(celsius), value) << mode;
        EXPECT_EQ(temperatureUnit(), unit) << mode;
    }
}

TEST_F(VTRFormattersTest, FrostIsNoTemperature) {
    for (const int mode : {0, 1, 2}) {
        setTemperatures(mode);
        EXPECT_EQ(temperatureValue(-1), "-");
        EXPECT_EQ(temperatureValue(-0.001), "-");
    }
}

TEST_F(VTRFormattersTest, SensorsShowTheUnitOfTheirType) {
    setTemperatures(0);
    struct Shown {
        std::int64_t type;
        double value;
        std::string_view text;
    };
    for (const auto& [type, value, text] :
         {Shown{0, 41.6, "42\u00B0"}, Shown{1, -2, "-\u00B0"}, Shown{2, 1199.6, "1200"},
          Shown{3, 12.345, "12.35 V"}, Shown{4, 0.5, "0.50 A"}, Shown{5, 7, "7.00 W"},
          Shown{6, 1.005, "1.00"}, Shown{7, 250.4, "250 lx"}, Shown{8, 999.6, "1000 MHz"},
          Shown{8, 1000, "1.00 GHz"}, Shown{8, 2400, "2.40 GHz"}, Shown{9, 3, "3.00"},
          Shown{-1, 3, "3.00"}})
        EXPECT_EQ(formattedSensor(SensorReading{type, value}), text) << type;
}

TEST_F(VTRFormattersTest, NoSensorIsADash) { EXPECT_EQ(formattedSensor(std::nullopt), "-"); }

TEST_F(VTRFormattersTest, AnyFigureIsTaken) {
    using Limits = std::numeric_limits<double>;
    setDataFormat(0);
    for (const double figure : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(),
                                Limits::max(), Limits::lowest(), Limits::denorm_min()}) {
        EXPECT_NE(formattedDiskActivity(figure), "");
        EXPECT_NE(formattedBandwidth(false, figure), "");
        EXPECT_NE(formattedBandwidth(true, figure), "");
        EXPECT_NE(formattedMemory(figure), "");
        EXPECT_NE(formattedSpace(figure), "");
        EXPECT_NE(temperatureValue(figure), "");
        for (std::int64_t type = 0; type < 10; ++type)
            EXPECT_NE(formattedSensor(SensorReading{type, figure}), "");
    }
}

TEST_F(VTRFormattersTest, UnitsAreThoseOfTheUsersLanguage) {
    world.machine.directories.setResources(VANTOR_SOURCE_DIR "/Resources");
    world.machine.regionalSettings.setLocale("fr_FR");
    EXPECT_EQ(formattedMemory(2048), "2Mo");
}

TEST_F(VTRFormattersTest, DecimalPointIsNotTheLocales) {
    const test::DecimalCommas commas;
    EXPECT_EQ(formattedSensor(SensorReading{3, 1.5}), "1.50 V");
    EXPECT_EQ(formattedSpace(1), "1.0MB");
}

}  // namespace
}  // namespace vantor
