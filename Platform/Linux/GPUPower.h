#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vantor {

class DeviceFiles;

/// Whether a graphics processor may be touched. One that sleeps is left alone; one that might
/// fall asleep is given the time to; and what it says right after waking isn't believed. Finding
/// that out reads only files that the kernel answers by itself.
/// Units:  seconds of a monotonic clock.
/// Thread: main queue.
class GPUPower {
public:
    enum class State : std::uint8_t {
        asleep,
        waking,   // of late: its first readings are wrong
        resting,  // it had nothing to do: reading it now would keep it awake
        awake
    };

    static constexpr double kSettleSeconds = 3;
    static constexpr int kIdleReadings = 3;
    static constexpr double kUsualDelaySeconds = 5, kLongestDelaySeconds = 60;

    /// `folder` is the device's.
    GPUPower(DeviceFiles& files, const std::string& folder);

    State look(double now) noexcept;
    /// After a reading: how busy it was, in percent, if it said so.
    void noteLoad(std::optional<double> load, double now) noexcept;
    /// Whether it may fall asleep between two readings. As of the last look.
    bool maySleep() const noexcept { return maySleep_; }

private:
    bool isActive() noexcept;
    double restSeconds() noexcept;

    DeviceFiles& files_;
    std::string device_, status_, control_, delay_;
    bool wasAsleep_ = false, maySleep_ = false;
    double awakeSince_ = 0, restsUntil_ = 0;
    int idleReadings_ = 0;
};

}  // namespace vantor
