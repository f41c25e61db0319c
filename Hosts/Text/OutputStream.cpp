#include "Hosts/Text/OutputStream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <unistd.h>

namespace vantor {
namespace {

constexpr short kGone = POLLERR | POLLHUP | POLLNVAL;

}  // namespace

void OutputStream::write(std::string_view bytes) noexcept {
    while (!bytes.empty() && state_ == State::open) {
        if (!waitForRoom())
            return;
        // A pipe that polls as writable takes this much without blocking.
        const auto written =
            ::write(descriptor_, bytes.data(), std::min<std::size_t>(bytes.size(), PIPE_BUF));
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else
            noteError(errno);
    }
}

bool OutputStream::isReady() const noexcept {
    pollfd polled{descriptor_, POLLOUT, 0};
    return poll(&polled, 1, 0) == 1;
}

bool OutputStream::waitForRoom() noexcept {
    std::array<pollfd, 2> polled{{{descriptor_, POLLOUT, 0}, {interruptDescriptor_, POLLIN, 0}}};
    while (poll(polled.data(), polled.size(), -1) < 0)
        if (errno != EINTR) {
            noteError(errno);
            return false;
        }
    return (polled[0].revents & (POLLOUT | kGone)) != 0;
}

void OutputStream::noteError(int error) noexcept {
    if (error == EINTR || error == EAGAIN)
        return;
    // A terminal that was hung up answers EIO.
    const bool readerIsGone = error == EPIPE || (error == EIO && isatty(descriptor_) == 1);
    state_ = readerIsGone ? State::closed : State::failed;
    error_ = error;
}

}  // namespace vantor
