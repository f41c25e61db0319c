#include "Programs/vantorbar-daemon/ApplicationHeads.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedProcessSource.h"

namespace vantor {
namespace {

constexpr ApplicationID kFirefox{11}, kTerminal{12};

class ApplicationHeadsTest : public testing::Test {
protected:
    ApplicationHeadsTest() {
        source.start(1, "systemd", 0);
        queue.moveTo(10);
    }
    void add(int id, const char* name, int parent, int session, ApplicationID application = {}) {
        source.start(id, name, parent);
        source.setSession(id, session);
        source.setApplication(id, application);
    }
    int headOf(int id) {
        EXPECT_TRUE(source.read(readings));
        heads.setProcesses(readings);
        const auto found = std::ranges::find(readings, id, &ProcessReading::id);
        return readings[heads.headOf(static_cast<std::size_t>(found - readings.begin()))].id;
    }

    simulated::SimulatedMainQueue queue{0};
    simulated::SimulatedProcessSource source{queue};
    std::vector<ProcessReading> readings;
    ApplicationHeads heads{source};
};

TEST_F(ApplicationHeadsTest, TopmostProcessOfTheApplicationStandsForAll) {
    add(20, "systemd", 1, 20);
    add(30, "firefox", 20, 30, kFirefox);
    add(31, "Web Content", 30, 30, kFirefox);
    add(32, "RDD", 31, 32, kFirefox);
    EXPECT_EQ(headOf(32), 30);
    EXPECT_EQ(headOf(30), 30);
}

TEST_F(ApplicationHeadsTest, ParentOfAnotherApplicationStandsForItselfOnly) {
    add(30, "gnome-shell", 1, 30, kTerminal);
    add(31, "firefox", 30, 30, kFirefox);
    EXPECT_EQ(headOf(31), 31);
}

TEST_F(ApplicationHeadsTest, WithoutAnApplicationTheSessionTells) {
    add(30, "make", 1, 30);
    add(31, "cc1plus", 30, 30);
    add(32, "daemon", 30, 32);
    EXPECT_EQ(headOf(31), 30);
    EXPECT_EQ(headOf(32), 32);
}

TEST_F(ApplicationHeadsTest, OneWithAnApplicationIsNoPartOfOneWithout) {
    add(30, "i3", 1, 30);
    add(31, "firefox", 30, 30, kFirefox);
    EXPECT_EQ(headOf(31), 31);
}

TEST_F(ApplicationHeadsTest, ShellsInitAndUserManagerStandForNobodyElse) {
    add(20, "systemd", 1, 30);
    add(30, "bash", 20, 30, kTerminal);
    add(31, "make", 30, 30, kTerminal);
    add(32, "sh", 31, 30, kTerminal);
    add(33, "cc1plus", 32, 30, kTerminal);
    add(34, "cc1plus", 31, 30, kTerminal);
    add(40, "pulseaudio", 20, 30);
    source.setSession(1, 50);
    add(50, "cron", 1, 50);
    EXPECT_EQ(headOf(31), 31);
    EXPECT_EQ(headOf(34), 31);
    EXPECT_EQ(headOf(33), 31) << "the shell between runs a command of make's";
    EXPECT_EQ(headOf(32), 31);
    EXPECT_EQ(headOf(40), 40);
    EXPECT_EQ(headOf(50), 50);
}

TEST_F(ApplicationHeadsTest, ThreadsOfTheKernelStandAlone) {
    add(2, "kthreadd", 0, 0);
    add(3, "kworker/0:1", 2, 0);
    source.setKernelThread(2);
    source.setKernelThread(3);
    EXPECT_EQ(headOf(3), 3);
}

TEST_F(ApplicationHeadsTest, YoungerProcessWithTheParentsNumberIsNoParent) {
    add(31, "worker", 30, 30);
    queue.moveTo(20);
    add(30, "other", 1, 30);
    EXPECT_EQ(headOf(31), 31);
}

TEST_F(ApplicationHeadsTest, ParentThatIsNotToBeSeenEndsTheWay) {
    add(31, "worker", 30, 30);
    EXPECT_EQ(headOf(31), 31);
}

TEST_F(ApplicationHeadsTest, ReadingThatContradictsItselfEnds) {
    add(30, "a", 31, 30);
    add(31, "b", 30, 30);
    EXPECT_GE(headOf(30), 30);
}

TEST_F(ApplicationHeadsTest, SourceIsAskedOnceForEachProcessAndOnlyWhereItMatters) {
    add(30, "firefox", 1, 30, kFirefox);
    add(31, "Web Content", 30, 30, kFirefox);
    EXPECT_EQ(headOf(30), 30);
    EXPECT_EQ(source.applications(), 0) << "the init stands for nobody, whatever it is part of";
    EXPECT_EQ(headOf(31), 30);
    EXPECT_EQ(source.applications(), 2);
    heads.headOf(1);
    heads.headOf(2);
    EXPECT_EQ(source.applications(), 2);
}

}  // namespace
}  // namespace vantor
