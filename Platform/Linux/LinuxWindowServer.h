#pragma once

#include <cstddef>

#include "Platform/Clock.h"
#include "Platform/WindowServer.h"

namespace vantor {

/// Frames as a host's frame clock tells them; a compositor tells nobody else.
/// Shape:  the times of the newest kMostFrames frames, in a circle.
class LinuxWindowServer final : public WindowServer {
public:
    static constexpr std::size_t kMostFrames = 512;
    static constexpr double kPeriodSeconds = 1;

    explicit LinuxWindowServer(const Clock& clock) noexcept : clock_(clock) {}
    /// A host's frame clock ticked.
    void noteFrame() noexcept;
    /// The frames of the last second; nothing before the first frame.
    std::optional<double> frameRate() noexcept override;

private:
    const Clock& clock_;
    double times_[kMostFrames]{};
    std::size_t frames_ = 0;  // since the start
};

}  // namespace vantor
