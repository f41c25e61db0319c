#pragma once

namespace vantor::inline VANTOR_MODULE {

/// How a statement waits for a lock that another connection holds. A wait is for other processes,
/// so it goes by real time even where the program's own time is scripted.
/// Thread: any.
class SQLBusyWait {
public:
    virtual ~SQLBusyWait() = default;
    /// Seconds since some fixed moment.
    virtual double now() const noexcept = 0;
    virtual void sleep(int milliseconds) const noexcept = 0;

    /// A steady clock, and SQLite's own sleep.
    static const SQLBusyWait& real() noexcept;
};

}  // namespace vantor::inline VANTOR_MODULE
