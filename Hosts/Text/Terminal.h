#pragma once

#include <cstddef>

namespace vantor {

struct TerminalSize {
    std::size_t columns = 80, rows = 24;
};

/// 80 by 24 where the terminal doesn't say.
TerminalSize terminalSize(int descriptor) noexcept;

/// A terminal's second screen, without cursor and echo, for as long as this lives.
/// However the process ends, the terminal is as it was: also after a crash, as far as a signal
/// handler can see to it. What is written to standard error meanwhile waits for the end, where
/// that is a terminal, too. At most one at a time.
class Terminal {
public:
    /// The descriptor isn't owned.
    explicit Terminal(int descriptor);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// Gives the terminal back until `enter`.
    void leave() noexcept;
    void enter() noexcept;

    TerminalSize size() const noexcept { return terminalSize(descriptor_); }

    /// Gives the terminal back, if there is one in use. Safe in a signal handler.
    static void restoreNow() noexcept;

private:
    int descriptor_;
};

}  // namespace vantor
