#include "Programs/vantorbar/ZoneFile.h"

#include <fstream>

#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/ZoneFiles.h"

namespace vantor {
namespace {

class ZoneFileTest : public testing::Test {
protected:
    ZoneFileTest() {
        std::filesystem::create_directories(folder / "zones/Area");
        std::ofstream(folder / "zones/Area/Some_Town-1") << test::zoneFile({}, {0}, "XYZ-3");
        std::ofstream(folder / "outside") << test::zoneFile({}, {0}, "XYZ-3");
        std::ofstream(folder / "zones/table") << "not a zone\n";
    }
    auto named(std::string_view name) { return timeZoneNamed(name, folder / "zones"); }

    test::TemporaryFolder folder;
};

TEST_F(ZoneFileTest, AZoneIsFoundByItsName) {
    const auto zone = named("Area/Some_Town-1");
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->secondsFromGMT(0), 3 * 3600);
}

TEST_F(ZoneFileTest, UTCNeedsNoFile) {
    const auto zone = named("UTC");
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->secondsFromGMT(0), 0);
}

TEST_F(ZoneFileTest, WhatIsNoZoneIsNotFound) {
    for (const std::string& name :
         {std::string(), std::string("Area"), std::string("Area/None"), std::string("table"),
          std::string("../outside"), (folder / "outside").string()})
        EXPECT_FALSE(named(name)) << name;
}

}  // namespace
}  // namespace vantor
