#include "Shared/External/Logging/LGLogFileFormatterDefault.h"

#include <gtest/gtest.h>

#include "Foundation/TimeZoneRules.h"
#include "Shared/External/Logging/LGLogMessage.h"
#include "Tests/Support/World.h"
#include "Tests/Support/ZoneFiles.h"

namespace vantor {
namespace {

class LGLogFileFormatterDefaultTest : public testing::Test {
protected:
    std::optional<std::string> lineOf(const std::string& text) {
        LGLogFileFormatterDefault formatter(world.context.ports());
        return formatter.formatLogMessage(
            {world.context.ports(), text, 13, 4, 0, "", "", 0, {}, 0});
    }
    test::World world;
};

TEST_F(LGLogFileFormatterDefaultTest, ALineIsTheTimeAndTheText) {
    world.machine.run(61.25);
    EXPECT_EQ(lineOf("Unloading..."), "2015/03/09 11:21:01:250  Unloading...");
}

TEST_F(LGLogFileFormatterDefaultTest, TheTimeIsTheUsersOwn) {
    world.machine.timeZone.setRules(
        *TimeZoneRules::fromZoneFile(test::zoneFile({}, {0}, "CET-1CEST,M3.5.0,M10.5.0/3")));
    EXPECT_EQ(lineOf("x"), "2015/03/09 12:20:00:000  x");
    world.machine.clock.step(30 * 86400.0);
    EXPECT_EQ(lineOf("x"), "2015/04/08 13:20:00:000  x");
}

}  // namespace
}  // namespace vantor
