#pragma once

namespace vantor {

/// Counts somebody's calls, to tell who floods us. Units: seconds of any clock that doesn't step.
class CallRate {
public:
    static constexpr int kCallsASecond = 200;  // people don't get near it

    /// False from the call on that was one too many within a second.
    [[nodiscard]] bool allow(double now) noexcept {
        if (now >= begin_ + 1) {
            begin_ = now;
            calls_ = 0;
        }
        return ++calls_ <= kCallsASecond;
    }

private:
    double begin_ = -1e300;
    int calls_ = 0;
};

}  // namespace vantor
