#include <gtest/gtest.h>

#include "Platform/Linux/LinuxPlatform.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Tests/Support/DeviceTree.h"
#include "Tests/Support/TemporaryFolder.h"

// From the files of a Linux machine to the collector's items.

namespace vantor::test {
namespace {

class GPUStatCollectorLinuxTest : public testing::Test {
protected:
    /// What the module does, on a machine with these devices.
    GPUStatCollector& collector() {
        if (platform)
            return GPUStatCollector::sharedGPUCollector();
        platform.emplace(sources(), tree.kernel());
        context.emplace(platform->ports());
        GPUStatCollector& made = GPUStatCollector::sharedGPUCollector();
        made.fetchGPUS();
        made.updateDisplays();
        made.updateActiveGPU();
        made.updateStats();
        return made;
    }
    /// Folders of the test's own, and no bus.
    DirectorySources sources() const {
        return {.environment =
                    [home = folder.path()](const std::string& name) {
                        return name == "HOME" ? std::optional(home.string()) : std::nullopt;
                    },
                .accountHome = [] { return std::nullopt; },
                .program = {},
                .uninstalledResources = {}};
    }
    statsample newest(std::size_t index = 0) {
        return collector().gpu(index).sampleAtIndex(0, StorageType::now);
    }

    TemporaryFolder folder;
    DeviceTree tree;
    std::optional<LinuxPlatform> platform;
    std::optional<ProcessContext> context;
};

TEST_F(GPUStatCollectorLinuxTest, AMachineWithoutGraphicsHasNoItems) {
    EXPECT_TRUE(collector().items().empty());
    EXPECT_EQ(collector().sampleAtIndex(0, StorageType::now).sampleID, 2);
}

TEST_F(GPUStatCollectorLinuxTest, ACardHasItsMemoryAndItsLoad) {
    tree.add(discreteAMD());
    ASSERT_EQ(collector().items().size(), 1U);
    const GPUStatCollectorItem& gpu = collector().gpu(0);
    EXPECT_EQ(gpu.key, "000003000");  // where it is plugged in
    EXPECT_TRUE(modelContains(gpu.model, "amd"));
    EXPECT_FALSE(gpu.intergrated);
    EXPECT_TRUE(gpu.connected);
    EXPECT_EQ(gpu.totalyMemory, 17163091968);
    EXPECT_EQ(gpu.usedMemory(), 1073741824);
    EXPECT_EQ(newest().values[0], 1073741824.0 / 17163091968.0);
    EXPECT_EQ(newest().values[1], 42);
}

TEST_F(GPUStatCollectorLinuxTest, ADisplayHangsOnItsCard) {
    tree.add(discreteAMD());
    tree.addCard(kDiscreteAddress, 0, {{.name = "DP-1", .edid = edidBytes()}});
    ASSERT_EQ(collector().items().size(), 1U);
    ASSERT_EQ(collector().gpu(0).displays.size(), 1U);
    EXPECT_EQ(collector().gpu(0).displays[0].at("display-name").stringValue(), "U2720Q");
}

TEST_F(GPUStatCollectorLinuxTest, OfOneThatSleepsNothingIsDrawn) {
    PCIDevice card = discreteAMD();
    card.runtimeStatus = "suspended";
    tree.add(card);
    ASSERT_EQ(collector().items().size(), 1U);
    EXPECT_EQ(newest().values[0], -1);
    EXPECT_EQ(newest().values[1], -1);
    EXPECT_EQ(collector().gpu(0).surfaceCount(), 0);
}

TEST_F(GPUStatCollectorLinuxTest, OfTwoTheOneThatShowsAPictureIsActive) {
    tree.add(integratedAMD());
    tree.add(securityEngineOfAMD());
    tree.add(discreteAMD());
    tree.addCard(kDiscreteAddress, 0, {{.name = "DP-1", .edid = edidBytes()}});
    GPUStatCollector& found = collector();
    found.loadNotifications();
    found.updateActiveGPU();
    ASSERT_EQ(found.items().size(), 2U);
    EXPECT_TRUE(found.gpu(0).intergrated);
    EXPECT_EQ(found.activeGPU(), &found.gpu(1));
}

}  // namespace
}  // namespace vantor::test
