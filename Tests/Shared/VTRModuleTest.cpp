#include "Shared/VTRModule.h"

#include <gtest/gtest.h>

#include "Shared/VTRPreferences.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class FakeExtra final : public VTRModuleDelegate {
public:
    void update() override {}
    void updateSize() override {}
    bool isCombinedExtra() const override { return combined; }
    bool combined = false;
};

class VTRModuleTest : public testing::Test {
protected:
    bool measuresAt(int sequence) {
        return module.collectorShouldUpdateStateForSequence(collector, sequence).value();
    }

    test::World world;
    FakeExtra extra;
    VTRModule module{extra};
    test::TestCollector collector{world.machine.ports()};
};

TEST_F(VTRModuleTest, TimerFrequency0MeasuresEveryThirdTick) {
    VTRSetIntegerForKey("TimerFrequency", 0);
    for (const int sequence : {0, 3, -3, 6})
        EXPECT_TRUE(measuresAt(sequence)) << sequence;
    for (const int sequence : {1, 2, -2, -4})
        EXPECT_FALSE(measuresAt(sequence)) << sequence;
}

TEST_F(VTRModuleTest, TimerFrequency1MeasuresEverySecondTick) {
    VTRSetIntegerForKey("TimerFrequency", 1);
    for (const int sequence : {0, 4, -2})
        EXPECT_TRUE(measuresAt(sequence)) << sequence;
    for (const int sequence : {3, -3})
        EXPECT_FALSE(measuresAt(sequence)) << sequence;
}

TEST_F(VTRModuleTest, TimerFrequency2MeasuresEveryTick) {
    VTRSetIntegerForKey("TimerFrequency", 2);
    for (const int sequence : {0, 1, 2, -5})
        EXPECT_TRUE(measuresAt(sequence)) << sequence;
}

TEST_F(VTRModuleTest, WithAnyOtherTimerFrequencyOnlySequenceMinusOneMeasures) {
    for (const int frequency : {-1, 3, 100}) {
        VTRSetIntegerForKey("TimerFrequency", frequency);
        EXPECT_TRUE(measuresAt(-1));
        for (const int sequence : {0, 1, 2, 3, -2})
            EXPECT_FALSE(measuresAt(sequence)) << sequence;
    }
}

TEST_F(VTRModuleTest, SequenceMinusOneMeasuresUnderEveryTimerFrequency) {
    for (const int frequency : {0, 1, 2}) {
        VTRSetIntegerForKey("TimerFrequency", frequency);
        EXPECT_TRUE(measuresAt(-1)) << frequency;
    }
}

TEST_F(VTRModuleTest, TheExtraIsItsFirstDelegate) {
    ASSERT_EQ(module.delegates().size(), 1U);
    EXPECT_EQ(module.delegates()[0], &extra);
    module.addDelegate(extra);
    EXPECT_EQ(module.delegates().size(), 1U);
}

TEST_F(VTRModuleTest, ItsMenuKnowsIt) { EXPECT_EQ(module.menu()->delegate(), &module); }

TEST_F(VTRModuleTest, ADatabasesDirectoryIsMadeAndItsFileIsNamedForIt) {
    const test::TemporaryFolder folder;
    world.machine.directories.setRoot(folder.path());
    const auto path = module.databasePath("cpu");
    EXPECT_EQ(path, folder / "Application Support/Vantor Bar/databases/cpu.db");
    EXPECT_TRUE(std::filesystem::is_directory(path->parent_path()));
}

TEST_F(VTRModuleTest, ACombinedExtraHasFilesOfItsOwn) {
    const test::TemporaryFolder folder;
    world.machine.directories.setRoot(folder.path());
    extra.combined = true;
    EXPECT_EQ(module.databasePath("cpu")->filename(), "combined_cpu.db");
    EXPECT_EQ(VTRModule::databasePath("cpu", nullptr)->filename(), "cpu.db");
}

TEST_F(VTRModuleTest, WithoutAPlaceForItThereIsNoFile) {
    EXPECT_FALSE(module.databasePath("cpu"));
}

}  // namespace
}  // namespace vantor
