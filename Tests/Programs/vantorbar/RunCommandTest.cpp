// Runs the real program: what it writes, and how it ends.

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// The program with a home of its own, its standard output and error in one pipe.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string>& arguments) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        output_ = ends[0];
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
        std::vector<std::string> words{VANTOR_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<std::string> variables{fmt::format("HOME={}", home_.path().string()),
                                           "PATH=/usr/bin:/bin", "TERM=dumb"};
        const int error = posix_spawn(&id_, VANTOR_PROGRAM, &actions, nullptr,
                                      pointers(words).data(), pointers(variables).data());
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        if (error != 0)
            throw std::runtime_error("the program doesn't start");
    }
    ~RunningProgram() {
        closeOutput();
        if (id_ > 0) {
            kill(id_, SIGKILL);
            waitpid(id_, nullptr, 0);
        }
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    void send(int signal) const { kill(id_, signal); }
    void closeOutput() {
        if (output_ >= 0)
            close(output_);
        output_ = -1;
    }
    /// What it writes up to the next line end, or its end.
    std::string line() {
        std::string text;
        for (char byte = 0; byte != '\n' && takeByte(byte);)
            text += byte;
        return text;
    }
    std::string rest() {
        std::string text;
        for (char byte = 0; takeByte(byte);)
            text += byte;
        return text;
    }
    /// Waits for the end; -1 where a signal ended it.
    int status() {
        int status = 0;
        while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
        }
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    static std::vector<char*> pointers(std::vector<std::string>& words) {
        std::vector<char*> all;
        for (std::string& word : words)
            all.push_back(word.data());
        all.push_back(nullptr);
        return all;
    }
    bool takeByte(char& byte) const { return read(output_, &byte, 1) == 1; }

    test::TemporaryFolder home_;
    int output_ = -1;
    pid_t id_ = 0;
};

TEST(RunCommandTest, LinesOfJSONGoIntoAPipeUntilTheCountIsReached) {
    RunningProgram program({"run", "--count", "1"});
    const auto json = nlohmann::json::parse(program.line());
    for (const char* key : {"time", "user", "system", "nice", "cores", "load", "tasks", "threads"})
        EXPECT_TRUE(json.contains(key)) << key;
    EXPECT_GT(json["cores"].size(), 0u);
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 0);
}

TEST(RunCommandTest, AHostThatShowsNothingWritesNothing) {
    RunningProgram program({"run", "--host", "none", "--count", "1"});
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 0);
}

TEST(RunCommandTest, SignalsThatAskItToEndEndItInGoodOrder) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        RunningProgram program({"run"});
        ASSERT_THAT(program.line(), StartsWith("{"));  // it is running
        program.send(signal);
        EXPECT_EQ(program.status(), 0) << signal;
    }
}

TEST(RunCommandTest, AReaderThatGoesEndsItQuietly) {
    RunningProgram program({"run"});
    ASSERT_THAT(program.line(), StartsWith("{"));
    program.closeOutput();
    EXPECT_EQ(program.status(), 0);
}

/// For programs that are started meanwhile, no file may grow.
class FilesThatStay {
public:
    FilesThatStay() {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit none{0, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FilesThatStay() { setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_{};
};

TEST(RunCommandTest, AHistoryThatMayNotGrowStopsNothing) {
    const FilesThatStay limit;
    RunningProgram program({"run", "--host", "none", "--count", "2"});
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 0);
}

TEST(RunCommandTest, WrongUsageIsOneLineAndTheUsage) {
    struct Case {
        std::vector<std::string> arguments;
        std::string_view usage;
    };
    const std::vector<Case> cases{
        {{}, "Usage: vantorbar "},
        {{"walk"}, "Usage: vantorbar "},
        {{"--walk"}, "Usage: vantorbar "},
        {{"run", "--walk"}, "Usage: vantorbar run "},
        {{"run", "--host", "web"}, "Usage: vantorbar run "},
        {{"run", "--count", "0"}, "Usage: vantorbar run "},
        {{"run", "--count", "many"}, "Usage: vantorbar run "},
        {{"run", "--json", "--host", "none"}, "Usage: vantorbar run "},
    };
    for (const auto& [arguments, usage] : cases) {
        RunningProgram program(arguments);
        EXPECT_THAT(program.line(), StartsWith("vantorbar: "));
        EXPECT_THAT(program.line(), StartsWith(std::string(usage)));
        EXPECT_EQ(program.rest(), "");
        EXPECT_EQ(program.status(), 2);
    }
}

TEST(RunCommandTest, BarThatIsWantedNeedsADisplay) {
    RunningProgram program({"run", "--host", "bar"});  // whose environment names none
    EXPECT_EQ(program.rest(),
              "vantorbar: there is no display: neither WAYLAND_DISPLAY nor DISPLAY is set\n");
    EXPECT_EQ(program.status(), 1);
}

TEST(RunCommandTest, HelpAndVersionAreNoMistakes) {
    RunningProgram help({"--help"});
    EXPECT_THAT(help.rest(), HasSubstr("Usage: vantorbar "));
    EXPECT_EQ(help.status(), 0);
    RunningProgram version({"--version"});
    EXPECT_THAT(version.rest(), StartsWith("vantorbar "));
    EXPECT_EQ(version.status(), 0);
}

TEST(RunCommandTest, TheDoctorReportsOnThisMachine) {
    RunningProgram program({"doctor"});
    const std::string text = program.rest();
    EXPECT_THAT(text, HasSubstr("ok       Processor counters  readable\n"));
    const bool lacks = text.find("MISSING") != text.npos;  // that is up to the machine
    EXPECT_EQ(program.status(), lacks ? 1 : 0);
}

}  // namespace
}  // namespace vantor
