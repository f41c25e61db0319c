#include "Platform/Linux/GPUPower.h"

#include <algorithm>
#include <array>
#include <limits>

#include "Platform/Linux/DeviceFiles.h"

namespace vantor {
namespace {

constexpr double kLongAgo = std::numeric_limits<double>::lowest();
constexpr double kIdlePercent = 1;

bool says(DeviceFiles& files, const std::string& path, std::string_view word) noexcept {
    std::array<char, 32> buffer;
    const auto text = files.read(path, buffer);
    return text && trimmedText(*text) == word;
}

}  // namespace

GPUPower::GPUPower(DeviceFiles& files, const std::string& folder)
    : files_(files), device_(folder), status_(folder + "/power/runtime_status"),
      control_(folder + "/power/control"), delay_(folder + "/power/autosuspend_delay_ms"),
      awakeSince_(kLongAgo), restsUntil_(kLongAgo) {}

/// A kernel without this file puts no device to sleep while it runs.
bool GPUPower::isActive() noexcept {
    if (says(files_, status_, "active"))
        return true;
    return !files_.exists(status_) && files_.exists(device_);
}

GPUPower::State GPUPower::look(double now) noexcept {
    if (!isActive()) {
        wasAsleep_ = true;
        idleReadings_ = 0;
        return State::asleep;
    }
    if (wasAsleep_) {
        wasAsleep_ = false;
        awakeSince_ = now;
    }
    maySleep_ = says(files_, control_, "auto");
    if (now - awakeSince_ < kSettleSeconds)
        return State::waking;
    return maySleep_ && now < restsUntil_ ? State::resting : State::awake;
}

void GPUPower::noteLoad(std::optional<double> load, double now) noexcept {
    const bool isIdle = load.value_or(0) < kIdlePercent;
    idleReadings_ = isIdle && maySleep_ ? idleReadings_ + 1 : 0;
    if (idleReadings_ < kIdleReadings)
        return;
    restsUntil_ = now + restSeconds();
    idleReadings_ = kIdleReadings - 1;  // if it is idle at the end of the rest, it rests again
}

/// Long enough for the kernel to see it unused, whenever it last looked.
double GPUPower::restSeconds() noexcept {
    const auto milliseconds = files_.count(delay_);
    const double delay =
        milliseconds ? static_cast<double>(*milliseconds) / 1000 : kUsualDelaySeconds;
    return 2 * std::min(delay, kLongestDelaySeconds) + 1;
}

}  // namespace vantor
