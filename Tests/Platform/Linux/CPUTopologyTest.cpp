#include "Platform/Linux/CPUTopology.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A made /sys/devices/system/cpu.
class CPUTopologyTest : public ::testing::Test {
protected:
    struct Attributes {
        std::string package = "0", die = "0", core = "0", siblings = "";
    };

    void write(const std::string& name, const std::string& text) {
        writeText(folder_ / name, text + "\n");
    }
    void addCPU(int cpu, const Attributes& attributes) {
        const std::string topology = "cpu" + std::to_string(cpu) + "/topology/";
        write(topology + "physical_package_id", attributes.package);
        write(topology + "die_id", attributes.die);
        write(topology + "core_id", attributes.core);
        if (!attributes.siblings.empty())
            write(topology + "core_cpus_list", attributes.siblings);
    }
    void addOfflineCPU(int cpu) { write("cpu" + std::to_string(cpu) + "/online", "0"); }
    CPUTopology read(const std::vector<std::uint32_t>& running = {}) const {
        return readCPUTopology(folder_.path(), running);
    }
    std::vector<std::uint32_t> order() const { return read().order; }

private:
    TemporaryFolder folder_;
};

TEST_F(CPUTopologyTest, ThreadsOfOneCoreStandSideBySide) {
    write("present", "0-3");
    addCPU(0, {.core = "0", .siblings = "0,2"});
    addCPU(1, {.core = "1", .siblings = "1,3"});
    addCPU(2, {.core = "0", .siblings = "0,2"});
    addCPU(3, {.core = "1", .siblings = "1,3"});
    const CPUTopology topology = read();
    EXPECT_THAT(topology.order, ElementsAre(0u, 2u, 1u, 3u));
    EXPECT_EQ(topology.logicalCores, 4u);
    EXPECT_EQ(topology.physicalCores, 2u);
}

TEST_F(CPUTopologyTest, PackageThenDieThenCoreGiveTheOrder) {
    write("present", "0-3");
    addCPU(0, {.package = "1", .die = "0", .core = "0", .siblings = "0"});
    addCPU(1, {.package = "0", .die = "1", .core = "0", .siblings = "1"});
    addCPU(2, {.package = "0", .die = "0", .core = "9", .siblings = "2"});
    addCPU(3, {.package = "0", .die = "0", .core = "8", .siblings = "3"});
    EXPECT_THAT(order(), ElementsAre(3u, 2u, 1u, 0u));
}

TEST_F(CPUTopologyTest, CoreNumbersThatRepeatInAnotherClusterAreOtherCores) {
    write("present", "0-3");
    addCPU(0, {.core = "0", .siblings = "0"});
    addCPU(1, {.core = "1", .siblings = "1"});
    addCPU(2, {.core = "0", .siblings = "2"});
    addCPU(3, {.core = "1", .siblings = "3"});
    EXPECT_EQ(read().physicalCores, 4u);
}

TEST_F(CPUTopologyTest, CoreNumbersServeWhereThereAreNoLists) {
    write("present", "0-3");
    addCPU(0, {.core = "0"});
    addCPU(1, {.core = "1"});
    addCPU(2, {.core = "0"});
    addCPU(3, {.core = "1"});
    EXPECT_THAT(order(), ElementsAre(0u, 2u, 1u, 3u));
    EXPECT_EQ(read().physicalCores, 2u);
}

TEST_F(CPUTopologyTest, OldNameOfTheListServes) {
    write("present", "0-1");
    write("cpu0/topology/thread_siblings_list", "0-1");
    write("cpu1/topology/thread_siblings_list", "0-1");
    EXPECT_EQ(read().physicalCores, 1u);
    EXPECT_EQ(read().logicalCores, 2u);
}

TEST_F(CPUTopologyTest, CoreThatTheKernelDoesNotKnowIsACoreOfItsOwn) {
    write("present", "0-1");
    addCPU(0, {.package = "-1", .core = "-1"});
    addCPU(1, {.package = "-1", .core = "-1"});
    EXPECT_THAT(order(), ElementsAre(0u, 1u));
    EXPECT_EQ(read().physicalCores, 2u);
}

TEST_F(CPUTopologyTest, CoresOfDifferentWidthAreCountedAsTheyAre) {
    write("present", "0-5");
    for (int cpu = 0; cpu < 4; ++cpu)
        addCPU(cpu, {.core = std::to_string(cpu / 2), .siblings = cpu < 2 ? "0-1" : "2-3"});
    addCPU(4, {.core = "8", .siblings = "4"});
    addCPU(5, {.core = "9", .siblings = "5"});
    const CPUTopology topology = read();
    EXPECT_EQ(topology.logicalCores, 6u);
    EXPECT_EQ(topology.physicalCores, 4u);
}

TEST_F(CPUTopologyTest, OfflineCPUNamedByItsSiblingStandsBesideIt) {
    write("present", "0-3");
    addCPU(0, {.core = "0", .siblings = "0,3"});
    addCPU(1, {.core = "1", .siblings = "1"});
    addCPU(2, {.core = "2", .siblings = "2"});
    addOfflineCPU(3);
    EXPECT_THAT(order(), ElementsAre(0u, 3u, 1u, 2u));
}

TEST_F(CPUTopologyTest, OfflineThreadsTakeTheirPlacesByTheNumbersOfOtherSiblings) {
    write("present", "0-7");
    addCPU(0, {.core = "0", .siblings = "0,4"});
    addCPU(4, {.core = "0", .siblings = "0,4"});
    addCPU(1, {.core = "1", .siblings = "1"});
    addCPU(6, {.core = "2", .siblings = "6"});
    addCPU(3, {.core = "3", .siblings = "3"});
    for (const int cpu : {5, 2, 7})
        addOfflineCPU(cpu);
    const CPUTopology topology = read();
    EXPECT_THAT(topology.order, ElementsAre(0u, 4u, 1u, 5u, 2u, 6u, 3u, 7u));
    EXPECT_EQ(topology.logicalCores, 8u);
    EXPECT_EQ(topology.physicalCores, 4u);
}

TEST_F(CPUTopologyTest, CoreWithBothThreadsOfflineStandsBehindTheOthers) {
    write("present", "0-5");
    for (const int cpu : {0, 1, 4, 5})
        addCPU(cpu, {.core = std::to_string(cpu / 2), .siblings = cpu < 2 ? "0-1" : "4-5"});
    addOfflineCPU(2);
    addOfflineCPU(3);
    const CPUTopology topology = read();
    EXPECT_THAT(topology.order, ElementsAre(0u, 1u, 4u, 5u, 2u, 3u));
    EXPECT_EQ(topology.physicalCores, 3u);
}

TEST_F(CPUTopologyTest, OfflineCPUIsNotTakenForTheThreadOfANarrowCore) {
    write("present", "0-5");
    for (int cpu = 0; cpu < 2; ++cpu)
        addCPU(cpu, {.core = "0", .siblings = "0-1"});
    for (const int cpu : {2, 3, 5})
        addCPU(cpu, {.core = std::to_string(cpu), .siblings = std::to_string(cpu)});
    addOfflineCPU(4);
    const CPUTopology topology = read();
    EXPECT_THAT(topology.order, ElementsAre(0u, 1u, 2u, 3u, 5u, 4u));
    EXPECT_EQ(topology.physicalCores, 5u);
}

TEST_F(CPUTopologyTest, OfflineCPUsOfAMachineWithoutThreadsStandBehindTheKnown) {
    write("present", "0-3");
    addCPU(0, {.core = "0", .siblings = "0"});
    addCPU(3, {.core = "3", .siblings = "3"});
    addOfflineCPU(1);
    addOfflineCPU(2);
    const CPUTopology topology = read();
    EXPECT_THAT(topology.order, ElementsAre(0u, 3u, 1u, 2u));
    EXPECT_EQ(topology.physicalCores, 4u);
}

TEST_F(CPUTopologyTest, PossibleCPUsServeWhereThePresentAreNotListed) {
    write("possible", "0-2");
    write("present", "what?");
    EXPECT_THAT(order(), ElementsAre(0u, 1u, 2u));
}

TEST_F(CPUTopologyTest, FoldersServeWhereThereIsNoList) {
    for (const int cpu : {10, 9, 0})
        addOfflineCPU(cpu);
    write("cpufreq/boost", "1");
    EXPECT_THAT(order(), ElementsAre(0u, 9u, 10u));
}

TEST_F(CPUTopologyTest, WithoutSysfsRunningCPUsServeAndCoresAreNotCounted) {
    const CPUTopology topology = read({5, 0, 2, 0});
    EXPECT_THAT(topology.order, ElementsAre(0u, 2u, 5u));
    EXPECT_EQ(topology.logicalCores, 0u);
    EXPECT_EQ(topology.physicalCores, 0u);
}

TEST_F(CPUTopologyTest, ThousandsOfCPUsWithoutCoresAreArranged) {
    write("present", "0-8191");
    EXPECT_EQ(read().order.size(), 8192u);
}

TEST_F(CPUTopologyTest, ListMayHaveRangesSinglesAndRepeats) {
    EXPECT_THAT(cpusOfList("8,0-3,2"), ElementsAre(0u, 1u, 2u, 3u, 8u));
    EXPECT_THAT(cpusOfList("5"), ElementsAre(5u));
}

TEST_F(CPUTopologyTest, MalformedListIsEmpty) {
    for (const char* const list :
         {"", ",", "1,", ",1", "3-1", "1-", "-1", "a", "0-3x", "0 - 3", "8192", "0-99999999999"})
        EXPECT_THAT(cpusOfList(list), IsEmpty()) << list;
}

}  // namespace
}  // namespace vantor::test
