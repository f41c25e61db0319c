#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxRegistry.h"
#include "Programs/vantorbar/Doctor.h"
#include "Tests/Support/DeviceTree.h"

// What the doctor says of each machine that we have.

namespace vantor::test {
namespace {

using testing::ElementsAre;

struct SteppedClock final : Clock {
    double time = 100;
    double now() const noexcept override { return time; }
    double monotonic() const noexcept override { return time; }
};

class DoctorGraphicsTest : public testing::Test {
protected:
    /// The findings, a line each: the verdict and what there is.
    std::vector<std::string> findings() {
        LinuxRegistry registry(clock, files,
                               {.kernel = tree.kernel(),
                                .root = tree.root(),
                                .nvml = "/nonexistent/libnvidia-ml.so.1"});
        graphicsFacts(registry);
        clock.time += 1;
        MachineFacts facts;
        facts.graphics = graphicsFacts(registry);
        std::vector<std::string> lines;
        for (const Finding& finding : examine(facts))
            if (finding.name == "Graphics")
                lines.push_back(std::string(wordFor(finding.verdict)) + finding.what);
        return lines;
    }
    static const char* wordFor(Verdict verdict) {
        return verdict == Verdict::fine      ? "ok: "
               : verdict == Verdict::limited ? "limited: "
                                             : "missing: ";
    }

    SteppedClock clock;
    DeviceTree tree;
    SystemDeviceFiles files;
};

TEST_F(DoctorGraphicsTest, MachineWithoutGraphics) {
    tree.add({.address = "0000:00:1f.3", .classCode = 0x040300, .vendor = 0x8086, .device = 1});
    EXPECT_THAT(findings(), ElementsAre("ok: none on the PCI bus"));
}

TEST_F(DoctorGraphicsTest, DiscreteAMD) {
    tree.add(discreteAMD());
    EXPECT_THAT(findings(), ElementsAre("ok: AMD graphics 1002:73bf, driven by amdgpu, 16.0 GiB, "
                                        "awake, which tells memory and load"));
}

TEST_F(DoctorGraphicsTest, IntegratedAMDBesideItsSecurityEngine) {
    tree.add(integratedAMD());
    tree.add(securityEngineOfAMD());
    EXPECT_THAT(findings(), ElementsAre("ok: AMD graphics 1002:15bf, driven by amdgpu, 0.5 GiB, "
                                        "awake, which tells memory and load"));
}

TEST_F(DoctorGraphicsTest, IntegratedIntelByBothOfItsDrivers) {
    for (const char* const driver : {"i915", "xe"}) {
        tree.add(integratedIntel(driver));
        tree.writeProc("meminfo", "MemTotal:       16777216 kB\n");
        EXPECT_THAT(findings(),
                    ElementsAre("ok: Intel graphics 8086:46a6, driven by " + std::string(driver) +
                                ", 16.0 GiB, awake, which tells memory and load"));
        tree.remove(kIntegratedAddress);
    }
}

TEST_F(DoctorGraphicsTest, NVIDIAWithoutItsLibraryIsLimited) {
    tree.add(discreteNVIDIA());
    EXPECT_THAT(findings(), ElementsAre("limited: NVIDIA graphics 10de:25a2, driven by nvidia, "
                                        "whose management library doesn't answer"));
}

TEST_F(DoctorGraphicsTest, SleepingNVIDIABesideIntel) {
    tree.add(integratedIntel());
    PCIDevice card = discreteNVIDIA();
    card.powerControl = "auto";
    card.runtimeStatus = "suspended";
    tree.add(card);
    const auto lines = findings();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], "ok: NVIDIA graphics 10de:25a2, driven by nvidia, asleep; it is left alone "
                        "until something wakes it");
}

TEST_F(DoctorGraphicsTest, TwoNVIDIACardsAreTwoFindings) {
    tree.add(discreteNVIDIA("0000:01:00.0", "0000:00:01.0"));
    tree.add(discreteNVIDIA("0000:02:00.0", "0000:00:06.0"));
    EXPECT_EQ(findings().size(), 2u);
}

TEST_F(DoctorGraphicsTest, ExternalCardIsThereOnlyWhileItIsPlugged) {
    tree.add(integratedIntel());
    tree.add(externalAMD());
    EXPECT_EQ(findings().size(), 2u);
    tree.remove(kExternalAddress);
    EXPECT_EQ(findings().size(), 1u);
}

TEST_F(DoctorGraphicsTest, DriverThatTellsNothingIsNoFault) {
    PCIDevice card = discreteNVIDIA();
    card.driver = "nouveau";
    tree.add(card);
    EXPECT_THAT(findings(), ElementsAre("ok: NVIDIA graphics 10de:25a2, driven by nouveau, awake, "
                                        "which tells neither memory nor load"));
}

TEST_F(DoctorGraphicsTest, CardWithoutADriverIsLimited) {
    PCIDevice card = discreteAMD();
    card.driver = "";
    tree.add(card);
    EXPECT_THAT(findings(), ElementsAre("limited: AMD graphics 1002:73bf, driven by nobody"));
}

}  // namespace
}  // namespace vantor::test
