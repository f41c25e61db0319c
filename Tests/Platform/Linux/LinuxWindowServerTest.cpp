#include "Platform/Linux/LinuxWindowServer.h"

#include <gtest/gtest.h>

namespace vantor::test {
namespace {

struct StillClock final : Clock {
    double time = 100;
    double now() const noexcept override { return time; }
    double monotonic() const noexcept override { return time; }
};

TEST(LinuxWindowServerTest, WithoutAFrameThereIsNoRate) {
    const StillClock clock;
    EXPECT_EQ(LinuxWindowServer(clock).frameRate(), std::nullopt);
}

TEST(LinuxWindowServerTest, RateIsTheFramesOfTheLastSecond) {
    StillClock clock;
    LinuxWindowServer server(clock);
    for (int frame = 0; frame < 1000; ++frame) {
        clock.time += 1.0 / 64;
        server.noteFrame();
    }
    EXPECT_EQ(server.frameRate(), 64);
    clock.time += 2;
    EXPECT_EQ(server.frameRate(), 0);
}

}  // namespace
}  // namespace vantor::test
