#include "Platform/Linux/LinuxRegistry.h"

#include <filesystem>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxGraphicsControl.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/DeviceTree.h"

namespace vantor::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct StillClock final : Clock {
    double time = 100;
    double now() const noexcept override { return time; }
    double monotonic() const noexcept override { return time; }
};

std::string textOfData(const PropertyValue& value) {
    std::string text;
    if (const auto* const data = value.as<PropertyValue::Data>())
        for (const std::byte byte : *data)
            text.push_back(static_cast<char>(byte));
    return text;
}

std::size_t openDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

class LinuxRegistryTest : public testing::Test {
protected:
    LinuxRegistry& registry() {
        if (!registry_)
            registry_ = std::make_unique<LinuxRegistry>(
                clock, files,
                RegistrySources{.kernel = tree.kernel(), .root = tree.root(), .nvml = nvml});
        return *registry_;
    }
    std::vector<RegistryObject> objects(const char* className) {
        return registry().objectsMatching({{"IOProviderClass", className}});
    }
    std::vector<RegistryObject> processors() {
        return registry().objectsMatching(
            {{"IOProviderClass", "IOPCIDevice"}, {"IOName", "display"}});
    }
    RegistryObject accelerator(std::size_t index = 0) { return objects("IOAccelerator").at(index); }
    /// What the driver's object says after a second.
    const PropertyValue::Dictionary& statistics(std::size_t index = 0) {
        clock.time += 1;
        held_ = accelerator(index);
        return *held_->property("PerformanceStatistics").dictionary();
    }
    PropertyValue figure(const char* key, std::size_t index = 0) {
        const auto& all = statistics(index);
        const auto found = all.find(key);
        return found == all.end() ? PropertyValue{} : found->second;
    }
    static PropertyValue bytes(std::uint64_t count) { return {count}; }

    StillClock clock;
    DeviceTree tree;
    CountingDeviceFiles files;
    std::string nvml = "/nonexistent/libnvidia-ml.so.1";

private:
    std::unique_ptr<LinuxRegistry> registry_;
    RegistryObject held_;
};

TEST_F(LinuxRegistryTest, MachineWithoutGraphicsIsARootAlone) {
    tree.add({.address = "0000:00:1f.3", .classCode = 0x040300, .vendor = 0x8086, .device = 1});
    EXPECT_THAT(processors(), IsEmpty());
    EXPECT_THAT(registry().root()->children(), IsEmpty());
    EXPECT_FALSE(LinuxGraphicsControl(registry()).open());
}

TEST_F(LinuxRegistryTest, WithoutGraphicsNothingIsReadAfterTheFirstLook) {
    processors();
    files.forget();
    for (int sample = 0; sample < 100; ++sample) {
        clock.time += 1;
        EXPECT_THAT(processors(), IsEmpty());
        EXPECT_THAT(registry().graphics(), IsEmpty());
    }
    EXPECT_EQ(files.count(), 0u);
}

TEST_F(LinuxRegistryTest, KernelWithoutAPCIBusHasNoGraphics) {
    std::filesystem::remove_all(tree.kernel().sys);
    EXPECT_THAT(processors(), IsEmpty());
}

TEST_F(LinuxRegistryTest, ProcessorHasThePropertiesThatAreAskedFor) {
    tree.add(discreteAMD());
    const RegistryObject processor = processors().at(0);
    EXPECT_EQ(processor->property("IOName"), PropertyValue("display"));
    EXPECT_EQ(textOfData(processor->property("model")), "AMD graphics 1002:73bf");
    EXPECT_EQ(processor->property("AAPL,slot-name"), PropertyValue(kDiscreteAddress));
    EXPECT_EQ(textOfData(processor->property("vendor-id")), std::string("\x02\x10\0\0", 4));
    EXPECT_EQ(processor->property("built-in"), PropertyValue());
    EXPECT_EQ(processor->path(), "IOService:/pci0000:00/0000:00:01.0/0000:02:00.0/0000:03:00.0");
    EXPECT_EQ(registry().objectAtPath(*processor->path()), processor);
}

TEST_F(LinuxRegistryTest, DriverMayNameTheCard) {
    PCIDevice card = discreteAMD();
    card.files["product_name"] = "Instinct MI210\n";
    tree.add(card);
    EXPECT_EQ(textOfData(processors().at(0)->property("model")), "Instinct MI210");
}

TEST_F(LinuxRegistryTest, DiscreteAMDTellsItsMemoryAndItsLoad) {
    tree.add(discreteAMD());
    EXPECT_EQ(figure("vramUsedBytes"), bytes(1073741824));
    EXPECT_EQ(figure("vramFreeBytes"), bytes(17163091968 - 1073741824));
    EXPECT_EQ(figure("Device Utilization %"), PropertyValue(42.0));
    EXPECT_EQ(figure("gartUsedBytes"), PropertyValue());
    EXPECT_EQ(accelerator()->property("VRAM,totalsize"), bytes(17163091968));
    EXPECT_EQ(accelerator()->property("SurfaceList").array()->size(), 1u);
    EXPECT_EQ(accelerator()->parent(), processors().at(0));
}

TEST_F(LinuxRegistryTest, IntegratedAMDComesFirstAndTellsOfSharedMemory) {
    tree.add(discreteAMD());
    tree.add(integratedAMD());
    tree.add(securityEngineOfAMD());
    ASSERT_EQ(processors().size(), 2u);
    EXPECT_EQ(processors()[0]->name(), kAPUAddress);
    EXPECT_TRUE(processors()[0]->property("built-in"));
    EXPECT_FALSE(processors()[1]->property("built-in"));
    EXPECT_EQ(figure("gartUsedBytes", 0), bytes(104857600));
    EXPECT_EQ(figure("gartFreeBytes", 0), bytes(16777216000 - 104857600));
    EXPECT_EQ(figure("gartSizeBytes", 1), PropertyValue());
}

TEST_F(LinuxRegistryTest, FiguresAreReadAtMostOnceASample) {
    tree.add(discreteAMD());
    statistics();
    tree.write(kDiscreteAddress, "gpu_busy_percent", "99\n");
    EXPECT_EQ(
        accelerator()->property("PerformanceStatistics").dictionary()->at("Device Utilization %"),
        PropertyValue(42.0));
    EXPECT_EQ(figure("Device Utilization %"), PropertyValue(99.0));
}

TEST_F(LinuxRegistryTest, SampleReadsOnlyWhatItNeedsAndHoldsNothing) {
    tree.add(discreteAMD());
    statistics();
    files.forget();
    const std::size_t before = openDescriptors();
    statistics();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_THAT(files.touchedBelow(kDiscreteAddress),
                ElementsAre("gpu_busy_percent", "mem_info_vram_used", "power/control",
                            "power/runtime_status"));
}

TEST_F(LinuxRegistryTest, SampleOfTwoCardsAllocatesNothing) {
    tree.add(discreteAMD());
    tree.add(integratedAMD());
    const RegistryObject cards[] = {accelerator(0), accelerator(1)};
    SystemDeviceFiles plain;
    LinuxRegistry quiet(clock, plain, {.kernel = tree.kernel(), .root = tree.root(), .nvml = nvml});
    const auto objects = quiet.objectsMatching({{"IOProviderClass", "IOAccelerator"}});
    const auto sample = [&] {
        clock.time += 1;
        for (const RegistryObject& card : objects)
            card->property("PerformanceStatistics"), card->property("SurfaceList");
    };
    sample();
    const AllocationCounter counter;
    sample();
    EXPECT_EQ(counter.count(), 0u);
}

TEST_F(LinuxRegistryTest, FilesThatMakeNoSenseAreNoFigures) {
    tree.add(discreteAMD());
    statistics();
    for (const std::string& text :
         {std::string(), std::string("\n"), std::string("-5\n"), std::string("many\n"),
          std::string("12 MiB\n"), std::string(100'000, '7'), std::string("18446744073709551616"),
          std::string("1e9\n")}) {
        tree.write(kDiscreteAddress, "gpu_busy_percent", text);
        tree.write(kDiscreteAddress, "mem_info_vram_used", text);
        EXPECT_EQ(figure("Device Utilization %"), PropertyValue()) << text.substr(0, 20);
        EXPECT_EQ(figure("vramUsedBytes"), PropertyValue()) << text.substr(0, 20);
    }
    tree.write(kDiscreteAddress, "gpu_busy_percent", "101\n");
    EXPECT_EQ(figure("Device Utilization %"), PropertyValue());
}

TEST_F(LinuxRegistryTest, FilesThatVanishAreNoFigures) {
    tree.add(discreteAMD());
    statistics();
    std::filesystem::remove(tree.folderOf(kDiscreteAddress) / "gpu_busy_percent");
    EXPECT_EQ(figure("Device Utilization %"), PropertyValue());
    EXPECT_EQ(figure("vramUsedBytes"), bytes(1073741824));
}

TEST_F(LinuxRegistryTest, BrokenIdentityIsNoDevice) {
    tree.add(discreteAMD());
    for (const char* const uevent :
         {"", "PCI_CLASS=30000\n", "PCI_ID=1002:73BF\n", "PCI_CLASS=x\nPCI_ID=1002:73BF\n",
          "PCI_CLASS=30000\nPCI_ID=1002\n", "PCI_CLASS=30000\nPCI_ID=11002:73BF\n",
          "PCI_CLASS=1030000\nPCI_ID=1002:73BF\n"}) {
        tree.write(kDiscreteAddress, "uevent", uevent);
        registry().noteChanged();
        EXPECT_THAT(processors(), IsEmpty()) << uevent;
    }
}

// Sleep.

TEST_F(LinuxRegistryTest, SleepingCardIsNeverTouched) {
    PCIDevice card = discreteAMD();
    card.powerControl = "auto";
    card.runtimeStatus = "suspended";
    tree.add(card);
    tree.addCard(kDiscreteAddress, 1, {{.name = "DP-1", .edid = edidBytes()}});
    EXPECT_EQ(processors().size(), 1u);
    EXPECT_THAT(objects("IODisplayConnect"), IsEmpty());
    for (int sample = 0; sample < 20; ++sample) {
        EXPECT_THAT(statistics(), IsEmpty());
        registry().noteChanged();
    }
    EXPECT_THAT(files.touchedBelow(kDiscreteAddress),
                ElementsAre("power/runtime_status", "uevent"));
    EXPECT_EQ(accelerator()->property("SurfaceList").array()->size(), 0u);
}

TEST_F(LinuxRegistryTest, SleepingNVIDIABesideIntelIsNeverTouched) {
    tree.add(integratedIntel());
    PCIDevice card = discreteNVIDIA();
    card.powerControl = "auto";
    card.runtimeStatus = "suspended";
    tree.add(card);
    tree.writeProc(fmt::format("driver/nvidia/gpus/{}/information", kDiscreteAddress),
                   "Model: \t\t NVIDIA RTX\n");
    EXPECT_EQ(processors().size(), 2u);
    for (int sample = 0; sample < 20; ++sample)
        EXPECT_THAT(statistics(1), IsEmpty());
    EXPECT_THAT(files.touchedBelow(kDiscreteAddress),
                ElementsAre("power/runtime_status", "uevent"));
    EXPECT_EQ(textOfData(processors()[1]->property("model")), "NVIDIA graphics 10de:25a2");
}

TEST_F(LinuxRegistryTest, CardThatFellAsleepHasNoFiguresAndKeepsItsMemory) {
    tree.add(discreteAMD());
    statistics();
    tree.write(kDiscreteAddress, "power/runtime_status", "suspended\n");
    EXPECT_THAT(statistics(), IsEmpty());
    EXPECT_EQ(accelerator()->property("VRAM,totalsize"), bytes(17163091968));
}

TEST_F(LinuxRegistryTest, CardThatWokeIsReadAfterAWhile) {
    tree.add(discreteAMD());
    tree.write(kDiscreteAddress, "power/runtime_status", "suspended\n");
    statistics();
    tree.write(kDiscreteAddress, "power/runtime_status", "active\n");
    EXPECT_THAT(statistics(), IsEmpty());
    EXPECT_THAT(statistics(), IsEmpty());
    EXPECT_THAT(statistics(), IsEmpty());
    EXPECT_EQ(figure("Device Utilization %"), PropertyValue(42.0));
}

TEST_F(LinuxRegistryTest, IdleCardThatMaySleepIsLeftInPeaceForLongerThanItTakes) {
    PCIDevice card = discreteAMD();
    card.powerControl = "auto";
    card.files["gpu_busy_percent"] = "0\n";
    card.files["power/autosuspend_delay_ms"] = "5000\n";
    tree.add(card);
    for (int sample = 0; sample < 3; ++sample)
        statistics();
    files.forget();
    for (int second = 0; second < 10; ++second)
        EXPECT_EQ(figure("Device Utilization %"), PropertyValue(0.0));
    EXPECT_THAT(files.touchedBelow(kDiscreteAddress),
                ElementsAre("power/control", "power/runtime_status"));
}

// Displays.

TEST_F(LinuxRegistryTest, DisplayHangsOnItsProcessorWithinTenSteps) {
    tree.add(discreteAMD());
    tree.addCard(kDiscreteAddress, 0,
                 {{.name = "DP-1", .edid = edidBytes()},
                  {.name = "HDMI-A-1", .status = "disconnected", .enabled = "disabled"}});
    const auto plugs = objects("IODisplayConnect");
    ASSERT_EQ(plugs.size(), 1u);
    EXPECT_EQ(plugs[0]->parent(), processors().at(0));
    const auto displays = plugs[0]->children();
    ASSERT_EQ(displays.size(), 1u);
    EXPECT_EQ(displays[0]->property("DisplayProductName"), PropertyValue("U2720Q"));
    EXPECT_EQ(displays[0]->property("DisplaySerialString"), PropertyValue("ABC123"));
    EXPECT_EQ(displays[0]->property("DisplayProductID"), PropertyValue(std::int64_t{0x41A8}));
    EXPECT_EQ(displays[0]->property("DisplayVendorID"), PropertyValue(std::int64_t{0x10AC}));
    EXPECT_EQ(displays[0]->property("IODisplayLocation").stringValue(), displays[0]->path());
}

TEST_F(LinuxRegistryTest, DisplayWithABrokenEDIDIsCalledAfterItsPlug) {
    tree.add(discreteAMD());
    std::string broken = edidBytes();
    broken[50] = 7;
    tree.addCard(kDiscreteAddress, 0,
                 {{.name = "DP-1", .edid = broken}, {.name = "DP-2", .edid = ""}});
    ASSERT_EQ(objects("IODisplay").size(), 2u);
    EXPECT_EQ(objects("IODisplay")[0]->property("DisplayProductName"), PropertyValue("card0-DP-1"));
    EXPECT_EQ(objects("IODisplay")[0]->property("DisplayProductID"), PropertyValue());
}

// Other drivers.

TEST_F(LinuxRegistryTest, IntelSharesTheMemoryOfTheMachineAndAddsUpItsClients) {
    for (const char* const driver : {"i915", "xe"}) {
        tree.add(integratedIntel(driver));
        tree.writeProc("meminfo", "MemTotal:       16000000 kB\nMemFree: 1 kB\n");
        const auto client = [](int id, std::uint64_t render) {
            return fmt::format("drm-pdev:\t0000:00:02.0\ndrm-client-id:\t{}\n"
                               "drm-engine-render:\t{} ns\ndrm-resident-system0:\t1024 KiB\n",
                               id, render);
        };
        tree.writeClient(100, 5, client(1, 0));
        tree.writeClient(100, 6, client(1, 0));  // the same client
        tree.writeClient(200, 5, client(2, 0));
        registry().noteChanged();
        statistics();
        tree.writeClient(100, 5, client(1, 200'000'000));
        tree.writeClient(100, 6, client(1, 200'000'000));
        tree.writeClient(200, 5, client(2, 100'000'000));
        EXPECT_EQ(figure("Device Utilization %"), PropertyValue(30.0)) << driver;
        EXPECT_EQ(figure("vramUsedBytes"), bytes(2 << 20)) << driver;
        EXPECT_EQ(accelerator()->property("VRAM,totalsize"), bytes(16'384'000'000)) << driver;
        EXPECT_TRUE(processors().at(0)->property("built-in")) << driver;
        tree.remove(kIntegratedAddress);
    }
}

TEST_F(LinuxRegistryTest, ClientsOfAnotherDeviceDoNotCount) {
    tree.add(integratedIntel());
    tree.writeClient(100, 5, "drm-pdev:\t0000:03:00.0\ndrm-resident-system0:\t1 MiB\n");
    statistics();
    EXPECT_EQ(figure("vramUsedBytes"), bytes(0));
}

TEST_F(LinuxRegistryTest, DriversThatTellNothingHaveEmptyStatistics) {
    struct Case {
        const char* driver;
        std::uint16_t vendor;
        std::uint32_t classCode;
    };
    // nouveau, virtio-gpu, qxl, vmwgfx and ast of Linux 6.1, and a card that nobody drives.
    for (const auto& [driver, vendor, classCode] :
         {Case{"nouveau", 0x10DE, 0x030000}, Case{"virtio-pci", 0x1AF4, 0x038000},
          Case{"qxl", 0x1B36, 0x030000}, Case{"vmwgfx", 0x15AD, 0x030000},
          Case{"ast", 0x1A03, 0x030000}, Case{"", 0x1234, 0x030000}}) {
        tree.add({.address = kIntegratedAddress,
                  .classCode = classCode,
                  .vendor = vendor,
                  .device = 1,
                  .driver = driver});
        registry().noteChanged();
        ASSERT_EQ(processors().size(), 1u) << driver;
        EXPECT_THAT(statistics(), IsEmpty()) << driver;
        EXPECT_FALSE(processors()[0]->property("built-in")) << driver;
        tree.remove(kIntegratedAddress);
    }
}

TEST_F(LinuxRegistryTest, CardThatLeftKeepsItsPropertiesAndComesBackAsItself) {
    tree.add(integratedIntel());
    tree.add(discreteAMD());
    const RegistryObject card = processors().at(1);
    statistics(1);
    tree.remove(kDiscreteAddress);
    registry().noteChanged();
    EXPECT_EQ(processors().size(), 1u);
    EXPECT_EQ(card->property("IOName"), PropertyValue("display"));
    EXPECT_EQ(card->parent(), nullptr);
    EXPECT_THAT(card->children(), IsEmpty());
    EXPECT_EQ(card->path(), std::nullopt);

    tree.add(discreteAMD());
    registry().noteChanged();
    EXPECT_EQ(processors().at(1), card);
    EXPECT_EQ(figure("Device Utilization %", 1), PropertyValue(42.0));
}

TEST_F(LinuxRegistryTest, CardThatVanishedUnnoticedHasNoFigures) {
    tree.add(discreteAMD());
    const RegistryObject held = accelerator();
    tree.remove(kDiscreteAddress);
    EXPECT_THAT(statistics(), IsEmpty());
}

TEST_F(LinuxRegistryTest, AnotherCardInTheSlotIsAnotherObject) {
    tree.add(discreteAMD());
    const RegistryObject before = processors().at(0);
    tree.remove(kDiscreteAddress);
    PCIDevice other = discreteAMD();
    other.device = 0x744C;
    tree.add(other);
    registry().noteChanged();
    EXPECT_NE(processors().at(0), before);
}

TEST_F(LinuxRegistryTest, DriverObjectOutlivesTheRegistry) {
    RegistryObject held;
    {
        tree.add(discreteAMD());
        LinuxRegistry brief(clock, files, {.kernel = tree.kernel(), .root = tree.root()});
        held = brief.objectsMatching({{"IOProviderClass", "IOAccelerator"}}).at(0);
    }
    EXPECT_EQ(held->property("SurfaceList").array()->size(), 0u);
}

// Who drives the screens.

TEST_F(LinuxRegistryTest, GraphicsControlIsThereForAnIntegratedAndAnotherProcessor) {
    tree.add(integratedIntel());
    EXPECT_FALSE(LinuxGraphicsControl(registry()).open());
    tree.add(discreteAMD());
    registry().noteChanged();
    EXPECT_TRUE(LinuxGraphicsControl(registry()).open());
}

TEST_F(LinuxRegistryTest, ProcessorThatShowsAPictureIsActive) {
    tree.add(integratedIntel());
    tree.add(discreteAMD());
    LinuxGraphicsControl control(registry());
    const auto driven = [&](const char* integrated, const char* discrete) {
        tree.addCard(kIntegratedAddress, 0, {{.name = "eDP-1", .enabled = integrated}});
        tree.addCard(kDiscreteAddress, 1, {{.name = "DP-1", .enabled = discrete}});
        registry().noteChanged();
        return control.activeGPU();
    };
    EXPECT_EQ(driven("enabled", "disabled"), GraphicsControl::kIntegrated);
    EXPECT_EQ(driven("disabled", "enabled"), GraphicsControl::kDiscrete);
    EXPECT_EQ(driven("enabled", "enabled"), GraphicsControl::kIntegrated);
    EXPECT_EQ(driven("disabled", "disabled"), std::nullopt);
}

}  // namespace
}  // namespace vantor::test
