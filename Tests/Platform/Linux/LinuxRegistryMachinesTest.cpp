#include <chrono>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxRegistry.h"
#include "Tests/Support/DeviceTree.h"
#include "Tests/Support/FakeNVML.h"

// Whole machines: several cards, and such as come and go.

namespace vantor::test {
namespace {

using namespace std::chrono_literals;
using namespace nvml_functions;
using testing::IsEmpty;

constexpr const char* kFirst = "0000:01:00.0";
constexpr const char* kSecond = "0000:02:00.0";

/// Two cards, of which the second has twice of everything.
constexpr const char* kTwoHandles = R"(
API int nvmlDeviceGetHandleByPciBusId_v2(const char* address, void** device) {
    *device = reinterpret_cast<void*>(address[6] == '1' ? 1L : 2L);
    return 0;
}
)";
constexpr const char* kTwoMemories = R"(
API int nvmlDeviceGetMemoryInfo(void* device, Memory* memory) {
    const auto times = reinterpret_cast<unsigned long>(device);
    *memory = {times * 1000, times * 600, times * 400};
    return 0;
}
)";
constexpr const char* kTwoRates = R"(
API int nvmlDeviceGetUtilizationRates(void* device, Utilization* rates) {
    note('r');
    *rates = {static_cast<unsigned>(reinterpret_cast<unsigned long>(device)) * 20, 0};
    return 0;
}
)";

struct SteppedClock final : Clock {
    double time = 100;
    double now() const noexcept override { return time; }
    double monotonic() const noexcept override { return time; }
};

class LinuxRegistryMachinesTest : public testing::Test {
protected:
    LinuxRegistry& registry() {
        if (!registry_)
            registry_ = std::make_unique<LinuxRegistry>(
                clock, files,
                RegistrySources{.kernel = tree.kernel(), .root = tree.root(), .nvml = library});
        return *registry_;
    }
    void addNVIDIA(const char* address, const char* bridge, const char* status = "active") {
        PCIDevice card = discreteNVIDIA(address, bridge);
        card.runtimeStatus = status;
        tree.add(card);
    }
    std::vector<RegistryObject> objects(const char* className) {
        return registry().objectsMatching({{"IOProviderClass", className}});
    }
    std::vector<RegistryObject> processors() {
        return registry().objectsMatching(
            {{"IOProviderClass", "IOPCIDevice"}, {"IOName", "display"}});
    }
    PropertyValue figure(const char* key, std::size_t index) {
        clock.time += 1;
        const auto driver = objects("IOAccelerator").at(index);
        const auto& all = *driver->property("PerformanceStatistics").dictionary();
        const auto found = all.find(std::string_view(key));
        return found == all.end() ? PropertyValue{} : found->second;
    }
    /// The library answers on a thread of its own.
    bool answersSoon(std::size_t index) {
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (!figure("vramUsedBytes", index) && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(2ms);
        return static_cast<bool>(figure("vramUsedBytes", index));
    }
    static PropertyValue bytes(std::uint64_t count) { return {count}; }

    SteppedClock clock;
    DeviceTree tree;
    SystemDeviceFiles files;
    FakeNVML nvml;
    std::string library = "/nonexistent/libnvidia-ml.so.1";

private:
    std::unique_ptr<LinuxRegistry> registry_;
};

TEST_F(LinuxRegistryMachinesTest, EachOfTwoNVIDIACardsTellsItsOwnFigures) {
    library = nvml.library({kInit, kShutdown, kTwoHandles, kTwoMemories, kTwoRates});
    addNVIDIA(kFirst, "0000:00:01.0");
    addNVIDIA(kSecond, "0000:00:06.0");
    ASSERT_TRUE(answersSoon(0));
    ASSERT_TRUE(answersSoon(1));
    EXPECT_EQ(figure("vramUsedBytes", 0), bytes(400));
    EXPECT_EQ(figure("vramUsedBytes", 1), bytes(800));
    EXPECT_EQ(figure("vramFreeBytes", 1), bytes(1200));
    EXPECT_EQ(figure("Device Utilization %", 0), PropertyValue(20.0));
    EXPECT_EQ(figure("Device Utilization %", 1), PropertyValue(40.0));
    EXPECT_EQ(objects("IOAccelerator")[1]->property("VRAM,totalsize"), bytes(2000));
    EXPECT_EQ(processors()[0]->property("AAPL,slot-name"), PropertyValue(kFirst));
    EXPECT_EQ(processors()[1]->property("AAPL,slot-name"), PropertyValue(kSecond));
}

TEST_F(LinuxRegistryMachinesTest, WhileOneOfTwoNVIDIACardsSleepsTheLibraryIsLeftAlone) {
    library = nvml.library({kInit, kShutdown, kTwoHandles, kTwoMemories, kTwoRates});
    addNVIDIA(kFirst, "0000:00:01.0");
    addNVIDIA(kSecond, "0000:00:06.0", "suspended");
    for (int sample = 0; sample < 20; ++sample) {
        EXPECT_FALSE(figure("vramUsedBytes", 0));
        EXPECT_FALSE(figure("vramUsedBytes", 1));
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(nvml.calls(), "");
}

TEST_F(LinuxRegistryMachinesTest, ASecondNVIDIACardThatGoesLeavesTheFirstItsFigures) {
    library = nvml.library({kInit, kShutdown, kTwoHandles, kTwoMemories, kTwoRates});
    addNVIDIA(kFirst, "0000:00:01.0");
    addNVIDIA(kSecond, "0000:00:06.0");
    ASSERT_TRUE(answersSoon(1));
    tree.remove(kSecond);
    registry().noteChanged();
    ASSERT_EQ(processors().size(), 1u);
    EXPECT_TRUE(answersSoon(0));
    EXPECT_EQ(figure("vramUsedBytes", 0), bytes(400));
}

TEST_F(LinuxRegistryMachinesTest, AnExternalCardBringsItsDisplaysAndTakesThemAway) {
    tree.add(integratedIntel());
    tree.addCard(kIntegratedAddress, 0, {{.name = "eDP-1", .edid = edidBytes()}});
    ASSERT_EQ(objects("IODisplay").size(), 1u);

    tree.add(externalAMD());
    tree.addCard(kExternalAddress, 1, {{.name = "DP-1", .edid = edidBytes()}});
    registry().noteChanged();
    ASSERT_EQ(processors().size(), 2u);
    const RegistryObject card = processors()[1];
    ASSERT_EQ(objects("IODisplay").size(), 2u);
    EXPECT_EQ(objects("IODisplayConnect")[1]->parent(), card);
    EXPECT_EQ(figure("Device Utilization %", 1), PropertyValue(60.0));

    tree.remove(kExternalAddress);
    registry().noteChanged();
    EXPECT_EQ(processors().size(), 1u);
    EXPECT_EQ(objects("IODisplay").size(), 1u);
    EXPECT_THAT(card->children(), IsEmpty());

    tree.add(externalAMD());
    registry().noteChanged();
    EXPECT_EQ(processors()[1], card);
    EXPECT_EQ(figure("Device Utilization %", 1), PropertyValue(60.0));
}

TEST_F(LinuxRegistryMachinesTest, OfACardThatWasUnpluggedNoFigureStays) {
    tree.add(externalAMD());
    const RegistryObject driver = objects("IOAccelerator").at(0);
    EXPECT_EQ(figure("Device Utilization %", 0), PropertyValue(60.0));
    tree.remove(kExternalAddress);
    registry().noteChanged();
    EXPECT_THAT(processors(), IsEmpty());
    EXPECT_THAT(*driver->property("PerformanceStatistics").dictionary(), IsEmpty());
    EXPECT_THAT(*driver->property("SurfaceList").array(), IsEmpty());
}

TEST_F(LinuxRegistryMachinesTest, AnExternalCardInAnotherPortIsAnotherProcessor) {
    tree.add(externalAMD());
    const RegistryObject before = processors()[0];
    tree.remove(kExternalAddress);
    PCIDevice elsewhere = externalAMD();
    elsewhere.address = "0000:52:00.0";
    elsewhere.bridges.front() = "0000:00:07.2";
    tree.add(elsewhere);
    registry().noteChanged();
    ASSERT_EQ(processors().size(), 1u);
    EXPECT_NE(processors()[0], before);
    EXPECT_EQ(processors()[0]->property("AAPL,slot-name"), PropertyValue("0000:52:00.0"));
}

}  // namespace
}  // namespace vantor::test
