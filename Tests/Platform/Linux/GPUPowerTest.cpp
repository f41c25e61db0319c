#include "Platform/Linux/GPUPower.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/DeviceTree.h"

namespace vantor::test {
namespace {

using testing::ElementsAre;
using State = GPUPower::State;

/// A card that may fall asleep five seconds after its last use.
class GPUPowerTest : public testing::Test {
protected:
    GPUPowerTest() {
        PCIDevice card = discreteAMD();
        card.powerControl = "auto";
        card.files["power/autosuspend_delay_ms"] = "5000\n";
        tree.add(card);
    }
    void setStatus(const char* status) { write("power/runtime_status", status); }
    void write(const char* file, const char* text) { tree.write(kDiscreteAddress, file, text); }

    DeviceTree tree;
    CountingDeviceFiles files;
    GPUPower power{files, tree.kernel().sys / "bus/pci/devices" / kDiscreteAddress};
};

TEST_F(GPUPowerTest, AnythingButActiveIsAsleep) {
    EXPECT_EQ(power.look(0), State::awake);
    for (const char* const status :
         {"suspended", "suspending", "resuming", "error", "unsupported", "", "activeX"}) {
        setStatus(status);
        EXPECT_EQ(power.look(0), State::asleep) << status;
    }
}

TEST_F(GPUPowerTest, OfASleepingCardOnlyItsStatusIsRead) {
    setStatus("suspended");
    power.look(0);
    EXPECT_THAT(files.touchedBelow(kDiscreteAddress), ElementsAre("power/runtime_status"));
}

TEST_F(GPUPowerTest, KernelThatPutsNothingToSleepHasNoStatus) {
    std::filesystem::remove(tree.folderOf(kDiscreteAddress) / "power/runtime_status");
    EXPECT_EQ(power.look(0), State::awake);
}

TEST_F(GPUPowerTest, CardThatIsGoneIsAsleep) {
    tree.remove(kDiscreteAddress);
    EXPECT_EQ(power.look(0), State::asleep);
}

TEST_F(GPUPowerTest, FirstSecondsAfterWakingDoNotCount) {
    setStatus("suspended");
    power.look(10);
    setStatus("active");
    EXPECT_EQ(power.look(11), State::waking);
    EXPECT_EQ(power.look(13.9), State::waking);
    EXPECT_EQ(power.look(14), State::awake);
}

TEST_F(GPUPowerTest, CardThatIsIdleThreeTimesRestsTwiceAsLongAsItTakesToFallAsleep) {
    double now = 0;
    for (; now < 3; ++now) {
        EXPECT_EQ(power.look(now), State::awake);
        power.noteLoad(0, now);
    }
    EXPECT_EQ(power.look(now), State::resting);
    EXPECT_EQ(power.look(12.9), State::resting);
    EXPECT_EQ(power.look(13), State::awake);  // 2 s, and twice 5 s and one
}

TEST_F(GPUPowerTest, StillIdleAfterARestItRestsAgain) {
    for (const double now : {0, 1, 2})
        power.look(now), power.noteLoad(0, now);
    EXPECT_EQ(power.look(13), State::awake);
    power.noteLoad(0, 13);
    EXPECT_EQ(power.look(14), State::resting);
}

TEST_F(GPUPowerTest, WorkEndsTheCounting) {
    for (double now = 0; now < 20; ++now) {
        EXPECT_EQ(power.look(now), State::awake);
        power.noteLoad(static_cast<int>(now) % 3 == 2 ? 80 : 0, now);
    }
}

TEST_F(GPUPowerTest, LoadThatNobodyTellsCountsAsIdle) {
    for (const double now : {0, 1, 2})
        power.look(now), power.noteLoad(std::nullopt, now);
    EXPECT_EQ(power.look(3), State::resting);
}

TEST_F(GPUPowerTest, CardThatStaysOnNeverRests) {
    write("power/control", "on");
    for (double now = 0; now < 20; ++now) {
        EXPECT_EQ(power.look(now), State::awake);
        power.noteLoad(0, now);
    }
    EXPECT_FALSE(power.maySleep());
}

TEST_F(GPUPowerTest, DelayThatMakesNoSenseIsNotFollowed) {
    const std::pair<const char*, double> cases[] = {
        {"", 11}, {"-1", 11}, {"soon", 11}, {"99999999999999999999", 11}, {"3600000", 121}};
    for (const auto& [delay, rest] : cases) {
        write("power/autosuspend_delay_ms", delay);
        GPUPower fresh(files, tree.folderOf(kDiscreteAddress));
        for (int reading = 0; reading < GPUPower::kIdleReadings; ++reading)
            fresh.look(0), fresh.noteLoad(0, 0);
        EXPECT_EQ(fresh.look(rest - 0.1), State::resting) << delay;
        EXPECT_EQ(fresh.look(rest), State::awake) << delay;
    }
}

}  // namespace
}  // namespace vantor::test
