#pragma once

#include <cstdint>
#include <string_view>

namespace vantor {

/// A descriptor that others read at their own pace: a pipe, a terminal, a file.
/// Thread: one at a time. SIGPIPE mustn't end the process.
class OutputStream {
public:
    enum class State : std::uint8_t { open, closed, failed };

    static constexpr int kNone = -1;
    /// Neither descriptor is owned. A write waits for a slow reader, unless there is something to
    /// read on `interruptDescriptor`; it then gives up.
    explicit OutputStream(int descriptor, int interruptDescriptor = kNone) noexcept
        : descriptor_(descriptor), interruptDescriptor_(interruptDescriptor) {}

    /// All of `bytes`, as one write where the reader keeps up. Does nothing unless open.
    void write(std::string_view bytes) noexcept;
    /// Whether a write would begin at once.
    bool isReady() const noexcept;

    /// Closed where the reader is gone, failed where the bytes can't be stored.
    State state() const noexcept { return state_; }
    /// The errno of the failure.
    int error() const noexcept { return error_; }
    int descriptor() const noexcept { return descriptor_; }

private:
    bool waitForRoom() noexcept;
    void noteError(int error) noexcept;

    int descriptor_, interruptDescriptor_;
    State state_ = State::open;
    int error_ = 0;
};

}  // namespace vantor
