#pragma once

#include <sys/prctl.h>

namespace vantor {

/// How much later than asked the kernel may wake this thread, in this scope; 0 is the system's
/// own choice. A kernel that refuses costs a little power and nothing else.
class TimerSlack {
public:
    explicit TimerSlack(unsigned long nanoseconds) noexcept
        : before_(prctl(PR_GET_TIMERSLACK, 0, 0, 0, 0)) {
        prctl(PR_SET_TIMERSLACK, nanoseconds, 0, 0, 0);
    }
    ~TimerSlack() {
        if (before_ > 0)
            prctl(PR_SET_TIMERSLACK, static_cast<unsigned long>(before_), 0, 0, 0);
    }
    TimerSlack(const TimerSlack&) = delete;
    TimerSlack& operator=(const TimerSlack&) = delete;

private:
    int before_;
};

}  // namespace vantor
