#include "Platform/Linux/DetachedProcesses.h"

#include <algorithm>
#include <csignal>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/Linux/TimerSlack.h"

namespace vantor {
namespace {

/// What happens to the descriptors between fork and exec.
class SpawnActions {
public:
    SpawnActions() noexcept { isGood_ = posix_spawn_file_actions_init(&actions_) == 0; }
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    /// Our standard output may be what a bar reads: a child must not write there.
    bool silence() noexcept {
        for (int descriptor = 0; isGood_ && descriptor < 3; ++descriptor)
            isGood_ = posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", O_RDWR,
                                                       0) == 0;
        return isGood_ && posix_spawn_file_actions_addclosefrom_np(&actions_, 3) == 0;
    }
    const posix_spawn_file_actions_t* get() const noexcept { return &actions_; }

private:
    posix_spawn_file_actions_t actions_;
    bool isGood_;
};

/// A new session and the signals as they are after login.
class SpawnAttributes {
public:
    SpawnAttributes() noexcept { isGood_ = posix_spawnattr_init(&attributes_) == 0; }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    bool detach() noexcept {
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        constexpr auto kFlags =
            static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        return isGood_ && posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               posix_spawnattr_setsigdefault(&attributes_, &all) == 0 &&
               posix_spawnattr_setflags(&attributes_, kFlags) == 0;
    }
    const posix_spawnattr_t* get() const noexcept { return &attributes_; }

private:
    posix_spawnattr_t attributes_;
    bool isGood_;
};

std::optional<pid_t> spawn(std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    SpawnActions actions;
    SpawnAttributes attributes;
    if (!actions.silence() || !attributes.detach())
        return std::nullopt;
    const TimerSlack slack(0);  // the main queue's isn't for children, who would inherit it
    pid_t process = 0;
    const int error = posix_spawn(&process, pointers.front(), actions.get(), attributes.get(),
                                  pointers.data(), environ);
    return error == 0 ? std::optional(process) : std::nullopt;
}

}  // namespace

bool DetachedProcesses::start(std::vector<std::string> arguments) {
    if (arguments.empty())
        return false;
    const auto process = spawn(arguments);
    if (process)
        collectWhenItEnds(*process);
    return process.has_value();
}

void DetachedProcesses::collectWhenItEnds(pid_t process) {
    // By number: the C library's header forgot that C++ may include it.
    Descriptor descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
    if (!descriptor)
        return;  // an old kernel, or none left: better a zombie than an application that won't
                 // start
    auto watch =
        queue_.watch(descriptor.get(), POLLIN, [this, process](short) { collect(process); });
    children_.push_back({process, std::move(descriptor), std::move(watch)});
}

void DetachedProcesses::collect(pid_t process) {
    // ECHILD where somebody else in this process collected it: gone all the same.
    waitpid(process, nullptr, WNOHANG);
    std::erase_if(children_, [process](const Child& child) { return child.process == process; });
}

}  // namespace vantor
