#pragma once

namespace vantor {

/// Port: what time it is. Any thread; doesn't block.
class Clock {
public:
    virtual ~Clock() = default;
    /// Seconds since 1970. Steps when the machine's clock is set.
    virtual double now() const noexcept = 0;
    /// Seconds since some fixed moment; never steps, stands still while the machine sleeps.
    virtual double monotonic() const noexcept = 0;
};

}  // namespace vantor
