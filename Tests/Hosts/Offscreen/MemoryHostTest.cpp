#include "Hosts/Offscreen/MemoryHost.h"

#include <gtest/gtest.h>

#include "Targets/VantorBarCPU/VantorBarCPU.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class MemoryHostTest : public testing::Test {
protected:
    MemoryHostTest() { host.setExtra(&extra); }
    ~MemoryHostTest() override { host.setExtra(nullptr); }

    test::World world;
    MemoryHost host;
    VantorBarCPU extra{host};
};

TEST_F(MemoryHostTest, PaintsNothingBeforeTheItemIsThere) {
    host.displayIfNeeded();
    EXPECT_EQ(host.picture().widthPixels(), 0);
}

TEST_F(MemoryHostTest, ThePictureIsAsWideAsTheItemPaintsItself) {
    world.machine.run(1.5);
    extra.update();
    host.displayIfNeeded();
    EXPECT_EQ(host.picture().widthPixels(), static_cast<int>(host.length()));
    EXPECT_EQ(host.picture().heightPixels(), 22);
    EXPECT_NE(host.length(), 20);  // where it began
}

TEST_F(MemoryHostTest, CountsTheSamplesThatItPainted) {
    for (int second = 0; second < 3; ++second) {
        world.machine.run(second + 1.5);
        host.displayIfNeeded();
    }
    EXPECT_GT(host.samplesShown(), 0u);
}

}  // namespace
}  // namespace vantor
