#include "Programs/vantorbar/SignalWatch.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "Hosts/Text/Terminal.h"

namespace vantor {
namespace {

// All that a handler can reach.
std::atomic<int> pipeForSignals = -1;
std::atomic<bool> isEnding = false;

void endNow(int signal) noexcept {
    Terminal::restoreNow();
    std::signal(signal, SIG_DFL);
    raise(signal);  // comes through when the handler returns
}

void caught(int signal) {
    const int errorBefore = errno;
    if (asksToEnd(signal) && isEnding.exchange(true))
        endNow(signal);
    const auto byte = static_cast<unsigned char>(signal);
    // A pipe that is full has enough to tell.
    [[maybe_unused]] const auto written = write(pipeForSignals, &byte, 1);
    errno = errorBefore;
}

void ignored(int) {}

void setHandler(int signal, void (*handler)(int)) noexcept {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

}  // namespace

SignalWatch::SignalWatch(LinuxMainQueue& queue, const std::vector<int>& signals, Heard heard)
    : signals_(signals) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    readEnd_ = Descriptor(ends[0]);
    writeEnd_ = Descriptor(ends[1]);
    watch_ =
        queue.watch(descriptor(), POLLIN, [this, heard = std::move(heard)](short) { tell(heard); });
    pipeForSignals = writeEnd_.get();
    isEnding = false;
    // A handler that does nothing, not SIG_IGN: that would be passed on to programs we start.
    setHandler(SIGPIPE, ignored);
    setHandler(SIGXFSZ, ignored);  // a file that may not grow is one that can't be written
    for (const int signal : signals_)
        setHandler(signal, caught);
}

SignalWatch::~SignalWatch() {
    for (const int signal : signals_)
        std::signal(signal, SIG_DFL);
    pipeForSignals = -1;
}

void SignalWatch::tell(const Heard& heard) {
    std::array<unsigned char, 16> bytes;
    const auto size = read(descriptor(), bytes.data(), bytes.size());
    for (std::size_t i = 0; size > 0 && i < static_cast<std::size_t>(size); ++i)
        heard(bytes[i]);
}

bool asksToEnd(int signal) noexcept {
    return signal == SIGINT || signal == SIGTERM || signal == SIGHUP;
}

}  // namespace vantor
