#include "Platform/Linux/LinuxWindowServer.h"

#include <algorithm>

namespace vantor {

void LinuxWindowServer::noteFrame() noexcept {
    times_[frames_++ % kMostFrames] = clock_.monotonic();
}

std::optional<double> LinuxWindowServer::frameRate() noexcept {
    if (frames_ == 0)
        return std::nullopt;
    const double since = clock_.monotonic() - kPeriodSeconds;
    const auto known = std::min(frames_, kMostFrames);
    const auto recent =
        std::count_if(times_, times_ + known, [since](double time) { return time > since; });
    return static_cast<double>(recent) / kPeriodSeconds;
}

}  // namespace vantor
