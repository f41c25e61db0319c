#include "Platform/Linux/LinuxSystemLog.h"

#include <algorithm>
#include <array>
#include <limits>

#include <sys/uio.h>
#include <syslog.h>
#include <unistd.h>

namespace vantor {
namespace {

iovec piece(std::string_view text) noexcept {
    // The type has no const, but writing leaves the bytes alone.
    return {.iov_base = const_cast<char*>(text.data()), .iov_len = text.size()};
}

/// In one piece, so that lines of several threads don't mix. A terminal that takes no more
/// leaves nowhere to complain.
void writeLine(int terminal, std::string_view identity, std::string_view text) noexcept {
    const std::array pieces{piece(identity), piece(": "), piece(text), piece("\n")};
    [[maybe_unused]] const ssize_t written =
        writev(terminal, pieces.data(), static_cast<int>(pieces.size()));
}

}  // namespace

LinuxSystemLog::LinuxSystemLog(int terminal, const char* identity) noexcept
    : terminal_(isatty(terminal) == 1 ? terminal : -1), identity_(identity) {
    if (terminal_ < 0)
        openlog(identity_, LOG_PID, LOG_USER);
}

LinuxSystemLog::~LinuxSystemLog() {
    if (terminal_ < 0)
        closelog();
}

void LinuxSystemLog::write(std::string_view text) noexcept {
    constexpr std::size_t kLongest = std::numeric_limits<int>::max();
    if (terminal_ >= 0)
        writeLine(terminal_, identity_, text);
    else
        syslog(LOG_NOTICE, "%.*s", static_cast<int>(std::min(text.size(), kLongest)), text.data());
}

}  // namespace vantor
