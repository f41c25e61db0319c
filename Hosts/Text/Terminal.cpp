#include "Hosts/Text/Terminal.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <termios.h>
#include <unistd.h>

namespace vantor {
namespace {

constexpr std::string_view kEnter = "\x1b[?1049h\x1b[?25l\x1b[H\x1b[2J";
// First of all the end of a synchronised update, in which a crash may have come.
constexpr std::string_view kLeave = "\x1b[?2026l\x1b[0m\x1b[?25h\x1b[?1049l";

constexpr std::array kCrashes{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGQUIT};

/// What a signal handler needs to know, which reaches no object.
struct InUse {
    std::atomic<int> descriptor = -1;  // -1: no terminal is in use
    termios settings{};                // as they were
    bool hasSettings = false;
    int errors = -1, heldErrors = -1;  // standard error as it was, and the file in its place
    std::array<struct sigaction, kCrashes.size()> actions{};
};
InUse inUse;

void writeWhole(int descriptor, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const auto written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return;  // the terminal is gone; there is nothing to restore
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Standard error goes to a file in memory. Where there is none to be had, it stays on screen.
void holdErrors() noexcept {
    if (isatty(STDERR_FILENO) != 1)
        return;
    inUse.errors = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    inUse.heldErrors = memfd_create("errors", MFD_CLOEXEC);
    if (inUse.errors >= 0 && inUse.heldErrors >= 0)
        dup2(inUse.heldErrors, STDERR_FILENO);
}

void releaseErrors() noexcept {
    if (inUse.errors >= 0 && inUse.heldErrors >= 0) {
        dup2(inUse.errors, STDERR_FILENO);
        std::array<char, 512> bytes;
        off_t position = 0;
        for (ssize_t size = 0;
             (size = pread(inUse.heldErrors, bytes.data(), bytes.size(), position)) > 0;
             position += size)
            writeWhole(STDERR_FILENO, {bytes.data(), static_cast<std::size_t>(size)});
    }
    for (int* descriptor : {&inUse.errors, &inUse.heldErrors})
        if (*descriptor >= 0)
            close(std::exchange(*descriptor, -1));
}

/// Ours first, then whatever the signal did before.
void crashed(int signal) {
    Terminal::restoreNow();
    for (std::size_t i = 0; i < kCrashes.size(); ++i)
        if (kCrashes[i] == signal)
            sigaction(signal, &inUse.actions[i], nullptr);
    raise(signal);  // comes through when this handler returns
}

void catchCrashes() noexcept {
    struct sigaction action {};
    action.sa_handler = crashed;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kCrashes.size(); ++i)
        sigaction(kCrashes[i], &action, &inUse.actions[i]);
}

void releaseCrashes() noexcept {
    for (std::size_t i = 0; i < kCrashes.size(); ++i)
        sigaction(kCrashes[i], &inUse.actions[i], nullptr);
}

}  // namespace

Terminal::Terminal(int descriptor) : descriptor_(descriptor) {
    catchCrashes();
    enter();
}

Terminal::~Terminal() {
    leave();
    releaseCrashes();
}

void Terminal::enter() noexcept {
    if (inUse.descriptor.load() < 0) {
        inUse.hasSettings = tcgetattr(descriptor_, &inUse.settings) == 0;
        holdErrors();
        inUse.descriptor = descriptor_;
    }
    termios settings = inUse.settings;
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
    settings.c_iflag &= ~static_cast<tcflag_t>(IXON);  // a Ctrl-S would stop the measuring, too
    if (inUse.hasSettings)
        tcsetattr(descriptor_, TCSANOW, &settings);  // without it, keys show on the screen
    writeWhole(descriptor_, kEnter);
}

void Terminal::leave() noexcept { restoreNow(); }

TerminalSize terminalSize(int descriptor) noexcept {
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {};
    return {size.ws_col, size.ws_row};
}

void Terminal::restoreNow() noexcept {
    const int descriptor = inUse.descriptor.exchange(-1);
    if (descriptor < 0)
        return;
    writeWhole(descriptor, kLeave);
    if (inUse.hasSettings)
        tcsetattr(descriptor, TCSANOW, &inUse.settings);
    releaseErrors();
}

}  // namespace vantor
