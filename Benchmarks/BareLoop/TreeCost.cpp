// vantor_tree_cost SECONDS NAME PROGRAM [ARGUMENT...]: runs a program on a terminal of its own and
// prints what it and all that it started used meanwhile, as one line with tabs:
//   NAME, CPU seconds a minute, resident, proportional and private MiB, voluntary and involuntary
//   switches a second, KiB written

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <pty.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "Foundation/NumberText.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr auto kStart = 8s;  // what a program does at its start isn't measured

/// The number behind a label at the start of a line; 0 where there is none.
double figure(const fs::path& path, std::string_view label) {
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with(label))
            return vantor::leadingNumber(std::string_view(line).substr(label.size()));
    return 0;
}

fs::path folderOf(pid_t process) { return fmt::format("/proc/{}", process); }

/// A program on a terminal whose other end swallows what comes, with all that it starts.
class Tree {
public:
    explicit Tree(char** words) {
        const winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
        root_ = forkpty(&terminal_, nullptr, nullptr, &size);
        if (root_ < 0)
            throw std::system_error(errno, std::generic_category(), "forkpty");
        if (root_ == 0) {
            execvp(words[0], words);
            _exit(127);
        }
        swallower_ = std::jthread([terminal = terminal_] {
            char bytes[4096];
            while (read(terminal, bytes, sizeof bytes) > 0) {
            }
        });
    }
    ~Tree() {
        for (const pid_t process : processes())
            kill(process, SIGTERM);
        while (waitpid(root_, nullptr, 0) < 0 && errno == EINTR) {
        }
        swallower_.join();
        close(terminal_);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    bool isRunning() const { return waitpid(root_, nullptr, WNOHANG) == 0; }
    std::vector<pid_t> processes() const {
        std::vector<pid_t> all{root_};
        for (std::size_t place = 0; place < all.size(); ++place)
            for (const pid_t child : childrenOf(all[place]))
                all.push_back(child);
        return all;
    }

private:
    static std::vector<pid_t> childrenOf(pid_t process) {
        std::vector<pid_t> children;
        std::error_code gone;
        for (const auto& thread : fs::directory_iterator(folderOf(process) / "task", gone)) {
            std::ifstream stream(thread.path() / "children");
            for (pid_t child = 0; stream >> child;)
                children.push_back(child);
        }
        return children;
    }

    pid_t root_ = -1;
    int terminal_ = -1;
    std::jthread swallower_;
};

struct Usage {
    double cpuSeconds = 0, voluntary = 0, involuntary = 0, writtenBytes = 0;
};

/// Nanoseconds exact, with threads that have ended.
double cpuSecondsOf(pid_t process) {
    clockid_t clock = 0;
    timespec used{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0)
        return 0;
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

Usage usageOf(pid_t process) {
    Usage usage{.cpuSeconds = cpuSecondsOf(process),
                .writtenBytes = figure(folderOf(process) / "io", "write_bytes:")};
    std::error_code gone;
    for (const auto& thread : fs::directory_iterator(folderOf(process) / "task", gone)) {
        usage.voluntary += figure(thread.path() / "status", "voluntary_ctxt_switches:");
        usage.involuntary += figure(thread.path() / "status", "nonvoluntary_ctxt_switches:");
    }
    return usage;
}

using Usages = std::map<pid_t, Usage>;

Usages usagesOf(const Tree& tree) {
    Usages usages;
    for (const pid_t process : tree.processes())
        usages[process] = usageOf(process);
    return usages;
}

/// What all used since `before`. What ended meanwhile is lost, as none of them does that.
Usage usedSince(const Usages& before, const Usages& now) {
    Usage sum;
    for (const auto& [process, usage] : now) {
        const auto found = before.find(process);
        const Usage first = found != before.end() ? found->second : Usage{};
        sum.cpuSeconds += usage.cpuSeconds - first.cpuSeconds;
        sum.voluntary += usage.voluntary - first.voluntary;
        sum.involuntary += usage.involuntary - first.involuntary;
        sum.writtenBytes += usage.writtenBytes - first.writtenBytes;
    }
    return sum;
}

double mebibytes(const Tree& tree, std::initializer_list<std::string_view> labels) {
    double kibibytes = 0;
    for (const pid_t process : tree.processes())
        for (const std::string_view label : labels)
            kibibytes += figure(folderOf(process) / "smaps_rollup", label);
    return kibibytes / 1024;
}

void measure(int seconds, std::string_view name, char** words) {
    const Tree tree(words);
    std::this_thread::sleep_for(kStart);
    const Usages before = usagesOf(tree);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    if (!tree.isRunning())
        throw std::runtime_error(fmt::format("{} ended early", words[0]));
    const Usage used = usedSince(before, usagesOf(tree));
    fmt::print("{}\t{:.4f}\t{:.1f}\t{:.1f}\t{:.1f}\t{:.2f}\t{:.2f}\t{:.0f}\n", name,
               used.cpuSeconds * 60 / seconds, mebibytes(tree, {"Rss:"}), mebibytes(tree, {"Pss:"}),
               mebibytes(tree, {"Private_Clean:", "Private_Dirty:"}), used.voluntary / seconds,
               used.involuntary / seconds, used.writtenBytes / 1024);
}

}  // namespace

int main(int argc, char** argv) {
    const auto seconds = argc >= 4 ? vantor::wholeNumber(argv[1]) : std::nullopt;
    if (!seconds || *seconds <= 0) {
        fmt::print(stderr, "Usage: vantor_tree_cost SECONDS NAME PROGRAM [ARGUMENT...]\n");
        return 2;
    }
    try {
        measure(static_cast<int>(*seconds), argv[2], argv + 3);
        return 0;
    } catch (const std::exception& exception) {
        fmt::print(stderr, "vantor_tree_cost: {}\n", exception.what());
        return 1;
    }
}
