#include "Platform/Linux/LinuxProcessSource.h"

#include <array>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "Platform/Linux/LinuxClock.h"
#include "Tests/Platform/Linux/FakeProcesses.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::AllocationCounter;
using test::writeProcess;
using test::writeText;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LinuxProcessSourceTest : public testing::Test {
protected:
    std::vector<int> numbers() {
        std::vector<int> found;
        for (const ProcessReading& process : readings)
            found.push_back(process.id);
        return found;
    }
    /// Adds what a process of these tests has, and what nobody may touch.
    void addWhole(int id, const std::string& name) {
        writeProcess(proc.path(), id, name, 5);
        const fs::path folder = proc / std::to_string(id);
        writeText(folder / "cmdline", name + "-and-more\0-x\0"s);
        writeText(folder / "cgroup", "0::/user.slice/app.slice/foot.service\n");
        for (const char* const secret : {"environ", "mem", "maps", "smaps", "auxv", "status", "io"})
            writeText(folder / secret, "secret");
        fs::create_directories(folder / "fd");
        fs::create_directories(folder / "task");
        fs::create_symlink("/usr/bin/" + name + "-and-more", folder / "exe");
    }

    test::TemporaryFolder proc;
    LinuxClock clock;
    LinuxProcessSource source{clock, proc.path()};
    std::vector<ProcessReading> readings;
};

/// The names of the files below some folders that were opened since it was made.
class OpenedFiles {
public:
    explicit OpenedFiles(const std::vector<fs::path>& folders)
        : watch_(inotify_init1(IN_NONBLOCK)) {
        for (const fs::path& folder : folders)
            inotify_add_watch(watch_, folder.c_str(), IN_OPEN);
    }
    ~OpenedFiles() { close(watch_); }
    OpenedFiles(const OpenedFiles&) = delete;
    OpenedFiles& operator=(const OpenedFiles&) = delete;

    std::set<std::string> names() const {
        std::set<std::string> found;
        alignas(inotify_event) std::array<char, 4096> events;
        for (ssize_t size; (size = read(watch_, events.data(), events.size())) > 0;)
            for (ssize_t at = 0; at < size;) {
                const auto& event = *reinterpret_cast<const inotify_event*>(events.data() + at);
                found.insert(event.len > 0 ? event.name : ".");
                at += static_cast<ssize_t>(sizeof event + event.len);
            }
        return found;
    }

private:
    int watch_;
};

TEST_F(LinuxProcessSourceTest, ProcessesComeByRisingNumber) {
    for (const int id : {300, 7, 41, 1000})
        writeProcess(proc.path(), id, "a", 5);
    for (const char* const other : {"self", "42x", "-3", "0", "sys", "99999999999"})
        fs::create_directories(proc / other);
    ASSERT_TRUE(source.read(readings));
    EXPECT_THAT(numbers(), ElementsAre(7, 41, 300, 1000));
}

TEST_F(LinuxProcessSourceTest, ReadingHasTheTimeAtWhichItWasTaken) {
    writeProcess(proc.path(), 7, "a", 5);
    const double before = clock.monotonic();
    ASSERT_TRUE(source.read(readings));
    EXPECT_GE(readings.at(0).time, before);
    EXPECT_LE(readings.at(0).time, clock.monotonic());
}

TEST_F(LinuxProcessSourceTest, ProcessThatCannotBeReadIsPassedOver) {
    writeProcess(proc.path(), 7, "a", 5);
    writeProcess(proc.path(), 9, "b", 5);
    fs::create_directories(proc / "8");                              // it ended meanwhile
    writeText(proc / "10" / "stat", "10 (cut) S 1 1");               // a text that isn't whole
    writeText(proc / "11" / "stat", test::processStat(12, "a", 5));  // somebody else's
    ASSERT_TRUE(source.read(readings));
    EXPECT_THAT(numbers(), ElementsAre(7, 9));
}

TEST_F(LinuxProcessSourceTest, ChangesAreSeenByTheNextReading) {
    writeProcess(proc.path(), 7, "a", 5);
    ASSERT_TRUE(source.read(readings));
    writeProcess(proc.path(), 7, "a", 9);
    writeProcess(proc.path(), 8, "b", 1);
    ASSERT_TRUE(source.read(readings));
    EXPECT_THAT(numbers(), ElementsAre(7, 8));
    EXPECT_EQ(readings.at(0).ticks, 9u);
}

TEST_F(LinuxProcessSourceTest, FolderThatIsMissingIsNoReading) {
    LinuxProcessSource missing(clock, proc / "none");
    readings.resize(3);
    EXPECT_FALSE(missing.read(readings));
    EXPECT_THAT(readings, IsEmpty());
    writeProcess(proc / "none", 7, "a", 5);
    EXPECT_TRUE(missing.read(readings));
    EXPECT_THAT(readings, SizeIs(1));
}

TEST_F(LinuxProcessSourceTest, OnlyWhatEverybodyMayReadIsOpened) {
    addWhole(7, "a-name-of-fifte");
    addWhole(8, "b");
    const OpenedFiles opened({proc / "7", proc / "8", proc / "7/fd", proc / "7/task"});
    ASSERT_TRUE(source.read(readings));
    for (const ProcessReading& process : readings) {
        source.displayName(process);
        source.application(process);
    }
    EXPECT_THAT(opened.names(), ElementsAre("cgroup", "cmdline", "stat"));
}

TEST_F(LinuxProcessSourceTest, CutNameIsMadeWholeFromTheProgramsFile) {
    addWhole(7, "a-name-of-fifte");
    writeText(proc / "7" / "cmdline", "something else\0"s);
    ASSERT_TRUE(source.read(readings));
    EXPECT_EQ(source.displayName(readings.at(0)), "a-name-of-fifte-and-more");
}

TEST_F(LinuxProcessSourceTest, ProcessThatEndedSinceItsReadingHasTheKernelsName) {
    addWhole(7, "a-name-of-fifte");
    ASSERT_TRUE(source.read(readings));
    fs::remove_all(proc / "7");
    EXPECT_EQ(source.displayName(readings.at(0)), "a-name-of-fifte");
    EXPECT_EQ(source.application(readings.at(0)), ApplicationID::none);
}

TEST_F(LinuxProcessSourceTest, ProcessWithoutAnyNameHasItsNumber) {
    writeProcess(proc.path(), 7, "", 5);
    ASSERT_TRUE(source.read(readings));
    EXPECT_EQ(source.displayName(readings.at(0)), "(7)");
}

TEST_F(LinuxProcessSourceTest, ArgumentsThatFillTheBufferDoNoHarm) {
    writeProcess(proc.path(), 7, "python3", 5);
    writeText(proc / "7" / "cmdline", "python3\0-u\0"s + std::string(100'000, 'x'));
    ASSERT_TRUE(source.read(readings));
    EXPECT_EQ(source.displayName(readings.at(0)), "python3");
}

TEST_F(LinuxProcessSourceTest, ProcessesOfOneApplicationHaveTheSameOne) {
    addWhole(7, "a");
    addWhole(8, "b");
    addWhole(9, "c");
    writeText(proc / "9" / "cgroup", "0::/user.slice/app.slice/other.scope\n");
    ASSERT_TRUE(source.read(readings));
    EXPECT_EQ(source.application(readings.at(0)), source.application(readings.at(1)));
    EXPECT_NE(source.application(readings.at(0)), source.application(readings.at(2)));
    EXPECT_NE(source.application(readings.at(2)), ApplicationID::none);
}

TEST_F(LinuxProcessSourceTest, ReadingAgainDoesNotAllocate) {
    for (int id = 1; id <= 500; ++id)
        writeProcess(proc.path(), id, "process", 5);
    ASSERT_TRUE(source.read(readings));
    const AllocationCounter counter;
    const bool isRead = source.read(readings);
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_TRUE(isRead);
    EXPECT_THAT(readings, SizeIs(500));
}

TEST_F(LinuxProcessSourceTest, ThisMachineHasThisProcess) {
    LinuxProcessSource here(clock);
    const std::uint64_t now = here.ticksSinceBoot();
    ASSERT_TRUE(here.read(readings));
    const auto own = std::ranges::find(readings, getpid(), &ProcessReading::id);
    ASSERT_NE(own, readings.end());
    EXPECT_EQ(own->parent, getppid());
    EXPECT_EQ(own->session, getsid(0));
    EXPECT_LE(own->startTicks, now);
    EXPECT_GT(own->startTicks + static_cast<std::uint64_t>(86400 * here.ticksPerSecond()), now);
    EXPECT_EQ(here.displayName(*own), "vantor_tests");
}

}  // namespace
}  // namespace vantor
