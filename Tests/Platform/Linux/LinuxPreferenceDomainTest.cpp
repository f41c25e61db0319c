#include "Platform/Linux/LinuxPreferenceDomain.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Foundation/PropertyList.h"
#include "Platform/Clock.h"
#include "Platform/SystemLog.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using Dictionary = PropertyValue::Dictionary;

constexpr uid_t kNobody = 65534;

class HandClock final : public Clock {
public:
    double now() const noexcept override { return 1704164645; }  // 2024-01-02 03:04:05
    double monotonic() const noexcept override { return seconds; }
    double seconds = 1000;
};

class KeptLog final : public SystemLog {
public:
    void write(std::string_view text) noexcept override { lines.emplace_back(text); }
    std::vector<std::string> lines;
};

std::string bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

void putBytes(const fs::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

Dictionary settingsOf(const fs::path& file) {
    const auto value = propertyListValue(bytesOf(file));
    return value && value->dictionary() ? *value->dictionary() : Dictionary{{"unreadable", true}};
}

mode_t modeOf(const fs::path& file) {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// Runs `body` in a process of its own; its exit status is 0 where `body` was true.
pid_t fork(const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    bool held = false;
    try {
        held = body();
    } catch (...) {
    }
    ::_exit(held ? 0 : 1);
}

int statusOf(pid_t child) {
    int status = -1;
    return ::waitpid(child, &status, 0) == child ? status : -1;
}

class LinuxPreferenceDomainTest : public testing::Test {
protected:
    LinuxPreferenceDomain makeDomain() { return {file(), log, clock}; }
    fs::path file() const { return folder / "Vantor Bar" / "settings.plist"; }
    void put(std::string_view bytes) {
        fs::create_directories(file().parent_path());
        putBytes(file(), bytes);
    }
    void put(const Dictionary& settings) { put(propertyListXML(settings)); }
    std::vector<std::string> filesBeside() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(file().parent_path()))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    /// True where `body` was, run as a user whose rights count.
    bool asOrdinaryUser(const std::function<bool()>& body) {
        if (::geteuid() != 0)
            return body();
        for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
            if (::lchown(entry.path().c_str(), kNobody, kNobody) != 0)
                return false;
        if (::chown(folder.path().c_str(), kNobody, kNobody) != 0)
            return false;
        return statusOf(fork([&] {
                   return ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0 && body();
               })) == 0;
    }

    test::TemporaryFolder folder;
    KeptLog log;
    HandClock clock;
};

TEST_F(LinuxPreferenceDomainTest, AbsentFileReadsAsNothingAndIsNotMade) {
    LinuxPreferenceDomain domain = makeDomain();
    EXPECT_TRUE(domain.read("TimerFrequency").isNothing());
    EXPECT_TRUE(domain.readAll().empty());
    EXPECT_FALSE(fs::exists(file().parent_path()));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(LinuxPreferenceDomainTest, WrittenValueIsReadAndStandsInAnXMLList) {
    LinuxPreferenceDomain domain = makeDomain();
    domain.write("CPU_MenubarMode", "100,0");
    domain.write("TimerFrequency", std::int64_t{2});
    domain.synchronise();
    EXPECT_EQ(domain.read("CPU_MenubarMode"), PropertyValue("100,0"));
    EXPECT_TRUE(bytesOf(file()).starts_with("<?xml"));
    EXPECT_EQ(settingsOf(file()),
              (Dictionary{{"CPU_MenubarMode", "100,0"}, {"TimerFrequency", std::int64_t{2}}}));
}

TEST_F(LinuxPreferenceDomainTest, NothingRemovesTheKey) {
    LinuxPreferenceDomain domain = makeDomain();
    domain.write("a", true);
    domain.write("b", true);
    domain.write("a", {});
    domain.write("never there", {});
    EXPECT_EQ(domain.readAll(), (Dictionary{{"b", true}}));
}

TEST_F(LinuxPreferenceDomainTest, DirectoriesAndFileAreTheUsersAlone) {
    LinuxPreferenceDomain domain(folder / "a" / "b" / "settings.plist", log, clock);
    domain.write("a", true);
    EXPECT_EQ(modeOf(folder / "a"), 0700u);
    EXPECT_EQ(modeOf(folder / "a" / "b"), 0700u);
    EXPECT_EQ(modeOf(folder / "a" / "b" / "settings.plist"), 0600u);
}

TEST_F(LinuxPreferenceDomainTest, ModeOfAnOldFileIsKept) {
    put(Dictionary{{"a", true}});
    fs::permissions(file(), fs::perms{0640});
    makeDomain().write("b", true);
    EXPECT_EQ(modeOf(file()), 0640u);
}

TEST_F(LinuxPreferenceDomainTest, TargetOfASymbolicLinkIsReplaced) {
    const fs::path target = folder / "target.plist";
    putBytes(target, propertyListXML(Dictionary{{"a", true}}));
    fs::create_directories(file().parent_path());
    fs::create_symlink("../target.plist", file());
    makeDomain().write("b", true);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(settingsOf(target), (Dictionary{{"a", true}, {"b", true}}));
}

TEST_F(LinuxPreferenceDomainTest, LinkToAFileThatIsNotThereYetIsFollowed) {
    fs::create_directories(file().parent_path());
    fs::create_symlink(folder / "later.plist", file());
    makeDomain().write("a", true);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(settingsOf(folder / "later.plist"), (Dictionary{{"a", true}}));
}

TEST_F(LinuxPreferenceDomainTest, WritingWhatStandsLeavesTheFileAlone) {
    LinuxPreferenceDomain domain = makeDomain();
    domain.write("a", std::int64_t{1});
    const FileStamp before = stampOf(file());
    domain.write("a", std::int64_t{1});
    EXPECT_TRUE(stampOf(file()) == before);
}

TEST_F(LinuxPreferenceDomainTest, ValueThatCouldNotBeReadAgainIsRefused) {
    LinuxPreferenceDomain domain = makeDomain();
    domain.write("a", true);
    PropertyValue deep = true;
    for (int level = 0; level < 1'000; ++level)
        deep = PropertyValue::Array{deep};
    EXPECT_THROW(domain.write("deep", deep), std::runtime_error);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
}

// --- Other writers -----------------------------------------------------------------------------

TEST_F(LinuxPreferenceDomainTest, AnotherWritersValueIsSeenOnceTheChangeIsNoted) {
    LinuxPreferenceDomain one = makeDomain();
    LinuxPreferenceDomain other = makeDomain();
    EXPECT_TRUE(one.read("a").isNothing());
    other.write("a", std::int64_t{5});
    EXPECT_TRUE(one.read("a").isNothing()) << "no look at the file within a second";
    one.noteChanged();
    EXPECT_EQ(one.read("a"), PropertyValue(std::int64_t{5}));
}

TEST_F(LinuxPreferenceDomainTest, AnotherWritersValueIsSeenAfterASecondAnyway) {
    LinuxPreferenceDomain one = makeDomain();
    EXPECT_TRUE(one.read("a").isNothing());
    put(Dictionary{{"a", true}});
    clock.seconds += 1.5;
    EXPECT_EQ(one.read("a"), PropertyValue(true));
}

TEST_F(LinuxPreferenceDomainTest, ReadsWithinASecondDoNotTouchTheFile) {
    put(Dictionary{{"a", true}});
    LinuxPreferenceDomain domain = makeDomain();
    EXPECT_EQ(domain.read("a"), PropertyValue(true));
    fs::remove(file());
    EXPECT_EQ(domain.read("a"), PropertyValue(true));
}

TEST_F(LinuxPreferenceDomainTest, TwoWritersKeepEachOthersKeys) {
    LinuxPreferenceDomain one = makeDomain();
    LinuxPreferenceDomain other = makeDomain();
    one.write("a", std::int64_t{1});
    other.write("b", std::int64_t{2});
    one.write("c", std::int64_t{3});
    EXPECT_EQ(settingsOf(file()),
              (Dictionary{{"a", std::int64_t{1}}, {"b", std::int64_t{2}}, {"c", std::int64_t{3}}}));
}

TEST_F(LinuxPreferenceDomainTest, TwoProcessesWritingAtOnceLoseNothing) {
    constexpr int kKeys = 200;
    const auto writeAll = [&](const std::string& prefix) {
        LinuxPreferenceDomain domain = makeDomain();
        for (std::int32_t key = 0; key < kKeys; ++key)
            domain.write(prefix + std::to_string(key), std::int64_t{key});
        domain.synchronise();
        return true;
    };
    const pid_t one = fork([&] { return writeAll("one"); });
    const pid_t other = fork([&] { return writeAll("other"); });
    EXPECT_EQ(statusOf(one), 0);
    EXPECT_EQ(statusOf(other), 0);
    const Dictionary settings = settingsOf(file());
    EXPECT_EQ(settings.size(), 2u * kKeys);
    EXPECT_EQ(settings.count("one199"), 1u);
    EXPECT_EQ(settings.count("other0"), 1u);
}

TEST_F(LinuxPreferenceDomainTest, KilledWriterLeavesAWholeFile) {
    put(Dictionary{{"before", true}});
    for (int round = 0; round < 20; ++round) {
        const pid_t child = fork([&] {
            LinuxPreferenceDomain domain = makeDomain();
            for (std::int64_t value = 0;; ++value)
                domain.write("value", value);
            return true;
        });
        ::usleep(static_cast<useconds_t>(500 + 700 * round));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        ASSERT_TRUE(WIFSIGNALED(statusOf(child)));
        EXPECT_EQ(settingsOf(file()).count("before"), 1u);
    }
    makeDomain().write("after", true);
    EXPECT_EQ(settingsOf(file()).count("after"), 1u);
    EXPECT_EQ(filesBeside(), (std::vector<std::string>{"settings.plist", "settings.plist.lock"}));
}

TEST_F(LinuxPreferenceDomainTest, WriterWaitsForTheLock) {
    makeDomain().write("a", true);
    pid_t child = 0;
    {
        const SharedFileLock lock(file());
        child = fork([&] {
            ::closefrom(STDERR_FILENO + 1);  // the copy of our lock, which would outlive ours
            makeDomain().write("b", true);
            return true;
        });
        ::usleep(50'000);  // a writer that doesn't wait is done by now
        EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
    }
    EXPECT_EQ(statusOf(child), 0);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}, {"b", true}}));
}

// --- Damage ------------------------------------------------------------------------------------

TEST_F(LinuxPreferenceDomainTest, DamagedFileIsSetAsideAndTold) {
    for (const std::string_view damage : {"", "<plist><dict><key>a</key>", "no list at all, words",
                                          "<plist version=\"1.0\"><array/></plist>"}) {
        put(damage);
        LinuxPreferenceDomain domain = makeDomain();
        EXPECT_TRUE(domain.read("a").isNothing());
        EXPECT_TRUE(domain.read("a").isNothing());
        const fs::path aside = file().parent_path() / "settings.damaged-20240102-030405.plist";
        EXPECT_FALSE(fs::exists(file()));
        EXPECT_EQ(bytesOf(aside), damage);
        EXPECT_EQ(log.lines.size(), 1u);
        fs::remove(aside);
        log.lines.clear();
    }
}

TEST_F(LinuxPreferenceDomainTest, EarlierDamagedFileIsNeverOverwritten) {
    put("first damage");
    EXPECT_TRUE(makeDomain().readAll().empty());
    put("second damage");
    EXPECT_TRUE(makeDomain().readAll().empty());
    const fs::path directory = file().parent_path();
    EXPECT_EQ(bytesOf(directory / "settings.damaged-20240102-030405.plist"), "first damage");
    EXPECT_EQ(bytesOf(directory / "settings.damaged-20240102-030405-2.plist"), "second damage");
}

TEST_F(LinuxPreferenceDomainTest, WritingOverDamageKeepsTheDamagedFile) {
    LinuxPreferenceDomain domain = makeDomain();
    EXPECT_TRUE(domain.readAll().empty());
    put("damage");
    domain.write("a", true);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
    EXPECT_EQ(bytesOf(file().parent_path() / "settings.damaged-20240102-030405.plist"), "damage");
    EXPECT_EQ(log.lines.size(), 1u);
}

// --- What is in the way ------------------------------------------------------------------------

TEST_F(LinuxPreferenceDomainTest, SomethingElseInTheFilesPlaceIsUnreadable) {
    const std::vector<std::function<void()>> makers = {
        [&] { fs::create_directory(file()); },
        [&] { ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0); },
        [&] { fs::create_symlink("/dev/zero", file()); },
    };
    fs::create_directories(file().parent_path());
    for (const auto& make : makers) {
        make();
        log.lines.clear();
        LinuxPreferenceDomain domain = makeDomain();
        EXPECT_TRUE(domain.read("a").isNothing());
        clock.seconds += 5;
        EXPECT_TRUE(domain.read("a").isNothing());
        EXPECT_EQ(log.lines.size(), 1u) << "told once";
        EXPECT_THROW(domain.write("a", true), std::runtime_error);
        EXPECT_TRUE(fs::exists(file())) << "kept";
        fs::remove(file());
    }
}

TEST_F(LinuxPreferenceDomainTest, LinksThatGoInACircleAreUnreadable) {
    fs::create_directories(file().parent_path());
    fs::create_symlink(file(), file());
    LinuxPreferenceDomain domain = makeDomain();
    EXPECT_TRUE(domain.read("a").isNothing());
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_THROW(domain.write("a", true), std::runtime_error);
}

TEST_F(LinuxPreferenceDomainTest, WithoutAFileThereIsNothingAndWritingThrows) {
    LinuxPreferenceDomain domain({}, log, clock);
    EXPECT_TRUE(domain.read("a").isNothing());
    EXPECT_THROW(domain.write("a", true), std::runtime_error);
    EXPECT_NO_THROW(domain.synchronise());
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(LinuxPreferenceDomainTest, LockThatCannotBeTakenThrowsAndTheOldFileStands) {
    put(Dictionary{{"a", true}});
    fs::create_directory(file().string() + ".lock");
    EXPECT_THROW(makeDomain().write("b", true), std::runtime_error);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
}

TEST_F(LinuxPreferenceDomainTest, DirectoryThatCannotBeMadeThrows) {
    putBytes(folder / "Vantor Bar", "a file where the directory belongs");
    LinuxPreferenceDomain domain = makeDomain();
    EXPECT_TRUE(domain.read("a").isNothing());
    EXPECT_THROW(domain.write("a", true), std::runtime_error);
}

TEST_F(LinuxPreferenceDomainTest, DiskThatTakesNoMoreThrowsAndTheOldFileStands) {
    put(Dictionary{{"a", true}});
    const int status = statusOf(fork([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit smallest{100, 100};
        if (::setrlimit(RLIMIT_FSIZE, &smallest) != 0)
            return false;
        try {
            makeDomain().write("b", std::string(1'000, 'b'));
        } catch (const std::runtime_error& error) {
            return std::string_view(error.what()).find("too large") != std::string_view::npos;
        }
        return false;
    }));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
    EXPECT_EQ(filesBeside(), (std::vector<std::string>{"settings.plist", "settings.plist.lock"}));
}

TEST_F(LinuxPreferenceDomainTest, FileOfSomebodyElseReadsAsNothingIsKeptAndToldOnce) {
    put(Dictionary{{"a", true}});
    fs::permissions(file(), fs::perms::none);
    EXPECT_TRUE(asOrdinaryUser([&] {
        LinuxPreferenceDomain domain = makeDomain();
        const bool nothing = domain.read("a").isNothing();
        clock.seconds += 5;
        const bool stillNothing = domain.read("a").isNothing();
        try {
            domain.write("b", true);
        } catch (const std::runtime_error&) {
            return nothing && stillNothing && log.lines.size() == 1;
        }
        return false;
    }));
    fs::permissions(file(), fs::perms::owner_read);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
}

TEST_F(LinuxPreferenceDomainTest, DirectoryThatIsReadOnlyThrowsAndTheOldFileStands) {
    put(Dictionary{{"a", true}});
    fs::permissions(file().parent_path(), fs::perms{0500});
    EXPECT_TRUE(asOrdinaryUser([&] {
        LinuxPreferenceDomain domain = makeDomain();
        try {
            domain.write("b", true);
        } catch (const std::runtime_error&) {
            return domain.read("a") == PropertyValue(true);
        }
        return false;
    }));
    fs::permissions(file().parent_path(), fs::perms::owner_all);
    EXPECT_EQ(settingsOf(file()), (Dictionary{{"a", true}}));
}

TEST_F(LinuxPreferenceDomainTest, DamageInAReadOnlyDirectoryIsToldOnceAndKept) {
    put("damage");
    fs::permissions(file().parent_path(), fs::perms{0500});
    EXPECT_TRUE(asOrdinaryUser([&] {
        LinuxPreferenceDomain domain = makeDomain();
        const bool nothing = domain.read("a").isNothing();
        clock.seconds += 5;
        return nothing && domain.read("a").isNothing() && log.lines.size() == 1;
    }));
    fs::permissions(file().parent_path(), fs::perms::owner_all);
    EXPECT_EQ(bytesOf(file()), "damage");
}

}  // namespace
}  // namespace vantor
