#include "Programs/vantorbar-daemon/ProcessShares.h"

#include <cstdint>

namespace vantor {
namespace {

ProcessShare shareOf(std::uint64_t ticks, double seconds, double ticksPerSecond) noexcept {
    if (!(seconds > 0))
        return std::nullopt;
    return 100 * (static_cast<double>(ticks) / ticksPerSecond) / seconds;
}

}  // namespace

ProcessShare shareBetween(const ProcessReading& before, const ProcessReading& after,
                          double ticksPerSecond) noexcept {
    const std::uint64_t spent = after.ticks > before.ticks ? after.ticks - before.ticks : 0;
    return shareOf(spent, after.time - before.time, ticksPerSecond);
}

void sharesBetween(const ProcessesReading& before, const ProcessesReading& after,
                   double ticksPerSecond, std::vector<ProcessShare>& into) {
    into.clear();
    auto earlier = before.processes.begin();
    for (const ProcessReading& process : after.processes) {
        while (earlier != before.processes.end() && earlier->id < process.id)
            ++earlier;
        if (earlier != before.processes.end() && earlier->isSameProcess(process))
            into.push_back(shareBetween(*earlier, process, ticksPerSecond));
        else if (process.startTicks >= before.ticksSinceBoot)
            into.push_back(shareOf(process.ticks, process.time - before.time, ticksPerSecond));
        else
            into.push_back(std::nullopt);
    }
}

}  // namespace vantor
