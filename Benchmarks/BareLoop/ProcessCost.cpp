// vantor_process_cost SECONDS PROGRAM BARE_LOOP: runs the item without a face and the bare loop
// side by side and prints what both used, with the ceilings that we set ourselves.

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include "Foundation/NumberText.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using namespace std::chrono_literals;

std::string firstLine(const fs::path& path) {
    std::ifstream stream(path);
    std::string line;
    std::getline(stream, line);
    return line;
}

/// The number behind a label at the start of a line; 0 where there is none.
double figure(const fs::path& path, std::string_view label) {
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with(label))
            return vantor::leadingNumber(std::string_view(line).substr(label.size()));
    return 0;
}

/// A program that runs until this ends.
class Child {
public:
    explicit Child(std::vector<std::string> words) {
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        if (posix_spawn(&id_, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
            throw std::runtime_error(fmt::format("can't start {}", words[0]));
    }
    ~Child() {
        kill(id_, SIGTERM);
        while (waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    fs::path folder() const { return fmt::format("/proc/{}", id_); }
    bool isRunning() const { return kill(id_, 0) == 0 && !firstLine(folder() / "cmdline").empty(); }

private:
    pid_t id_ = 0;
};

struct Usage {
    double cpuSeconds = 0, switches = 0;
    Usage operator-(const Usage& other) const {
        return {cpuSeconds - other.cpuSeconds, switches - other.switches};
    }
};

/// What all threads used so far.
Usage usageOf(const Child& child) {
    Usage usage;
    for (const auto& thread : fs::directory_iterator(child.folder() / "task")) {
        // Nanoseconds on a processor, counted by the scheduler and not by ticks of the clock.
        usage.cpuSeconds += vantor::leadingNumber(firstLine(thread.path() / "schedstat")) / 1e9;
        for (const char* kind : {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"})
            usage.switches += figure(thread.path() / "status", kind);
    }
    return usage;
}

bool sleepsInPoll(const Child& child) {
    return firstLine(child.folder() / "syscall").starts_with(fmt::format("{} ", SYS_ppoll));
}

/// Milliseconds from its start until the item has armed its first sample and sleeps.
double startMilliseconds(const std::string& program) {
    const auto begin = Clock::now();
    const Child child({program, "run", "--host", "none"});
    while (Clock::now() - begin < 5s) {
        const auto seen = Clock::now();
        if (sleepsInPoll(child)) {
            std::this_thread::sleep_for(3ms);
            if (sleepsInPoll(child))
                return Seconds(seen - begin).count() * 1e3;
        }
        std::this_thread::sleep_for(200us);
    }
    throw std::runtime_error("the item never slept");
}

/// The quietest of a few starts: the others met something else on the machine.
double bestStartMilliseconds(const std::string& program) {
    double best = startMilliseconds(program);
    for (int again = 0; again < 4; ++again)
        best = std::min(best, startMilliseconds(program));
    return best;
}

struct Row {
    std::string_view what;
    double value, ceiling;
    int decimals;
};

void print(const Row& row) {
    fmt::print("{:34} {:10.{}f}", row.what, row.value, row.decimals);
    if (row.ceiling > 0)
        fmt::print("   at most {:g}{}", row.ceiling, row.value > row.ceiling ? "   EXCEEDED" : "");
    fmt::print("\n");
}

void measure(double seconds, const std::string& program, const std::string& bareLoop) {
    const double start = bestStartMilliseconds(program);
    const Child item({program, "run", "--host", "none"});
    const Child bare({bareLoop});
    std::this_thread::sleep_for(3s);  // the start is measured by itself
    const Usage itemBefore = usageOf(item), bareBefore = usageOf(bare);
    std::this_thread::sleep_for(Seconds(seconds));
    if (!item.isRunning() || !bare.isRunning())
        throw std::runtime_error("a program ended early");
    const Usage itemUsed = usageOf(item) - itemBefore, bareUsed = usageOf(bare) - bareBefore;
    const fs::path memory = item.folder() / "smaps_rollup";
    const auto mebibytes = [&](std::string_view label) { return figure(memory, label) / 1024; };

    const std::array rows{
        Row{"CPU seconds a minute, bare loop", bareUsed.cpuSeconds * 60 / seconds, 0, 5},
        Row{"CPU seconds a minute, item", itemUsed.cpuSeconds * 60 / seconds, 0, 5},
        Row{"item over bare loop", itemUsed.cpuSeconds / bareUsed.cpuSeconds, 1.6, 2},
        Row{"context switches a second", itemUsed.switches / seconds, 2.2, 2},
        Row{"resident, MiB", mebibytes("Rss:"), 8, 2},
        Row{"proportional, MiB", mebibytes("Pss:"), 0, 2},
        Row{"private, MiB", mebibytes("Private_Clean:") + mebibytes("Private_Dirty:"), 3, 2},
        Row{"start to first sample armed, ms", start, 30, 1},
    };
    for (const Row& row : rows)
        print(row);
}

}  // namespace

int main(int argc, char** argv) {
    const auto seconds = argc == 4 ? vantor::wholeNumber(argv[1]) : std::nullopt;
    if (!seconds || *seconds <= 0) {
        fmt::print(stderr, "Usage: vantor_process_cost SECONDS PROGRAM BARE_LOOP\n");
        return 2;
    }
    try {
        measure(*seconds, argv[2], argv[3]);
        return 0;
    } catch (const std::exception& exception) {
        fmt::print(stderr, "vantor_process_cost: {}\n", exception.what());
        return 1;
    }
}
