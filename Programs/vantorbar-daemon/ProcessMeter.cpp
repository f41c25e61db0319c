#include "Programs/vantorbar-daemon/ProcessMeter.h"

#include <algorithm>
#include <utility>

namespace vantor {

bool ProcessMeter::takeReading() {
    std::swap(before_, now_);
    now_.time = clock_.monotonic();
    now_.ticksSinceBoot = source_.ticksSinceBoot();
    if (!source_.read(now_.processes)) {
        std::swap(before_, now_);
        return false;
    }
    shares_.clear();
    if (std::exchange(hasReading_, true))
        sharesBetween(before_, now_, source_.ticksPerSecond(), shares_);
    else
        shares_.assign(now_.processes.size(), std::nullopt);
    heads_.setProcesses(now_.processes);
    return true;
}

std::optional<double> ProcessMeter::age() const noexcept {
    return hasReading_ ? std::optional(clock_.monotonic() - now_.time) : std::nullopt;
}

std::vector<ProcessRecord> ProcessMeter::busiest(std::size_t count, Hierarchy hierarchy) {
    addUp(hierarchy);
    rank(count, hierarchy);
    std::vector<ProcessRecord> records;
    records.reserve(ranked_.size());
    for (const std::size_t place : ranked_)
        records.push_back({source_.displayName(now_.processes[place]), sums_[place]});
    return records;
}

void ProcessMeter::addUp(Hierarchy hierarchy) {
    sums_.assign(shares_.size(), 0);
    for (std::size_t place = 0; place < shares_.size(); ++place)
        if (const double share = shares_[place].value_or(0); share > 0)
            sums_[headOf(place, hierarchy)] += share;
}

void ProcessMeter::rank(std::size_t count, Hierarchy hierarchy) {
    ranked_.clear();
    for (std::size_t place = 0; place < sums_.size(); ++place)
        if (sums_[place] > 0)
            ranked_.push_back(place);
    const auto isBusier = [this](std::size_t one, std::size_t other) {
        return sums_[one] != sums_[other] ? sums_[one] > sums_[other] : one < other;
    };
    if (ranked_.size() < count)
        fillWithIdle(count, hierarchy);
    const auto end = ranked_.begin() + static_cast<std::ptrdiff_t>(std::min(count, ranked_.size()));
    std::ranges::partial_sort(ranked_, end, isBusier);
    ranked_.erase(end, ranked_.end());
}

/// A short list would leave rows of the one before it standing.
void ProcessMeter::fillWithIdle(std::size_t count, Hierarchy hierarchy) {
    for (std::size_t place = 0; place < sums_.size() && ranked_.size() < count; ++place)
        if (shares_[place] && sums_[place] == 0 && headOf(place, hierarchy) == place)
            ranked_.push_back(place);
}

std::size_t ProcessMeter::headOf(std::size_t place, Hierarchy hierarchy) {
    return hierarchy == Hierarchy::combined ? heads_.headOf(place) : place;
}

}  // namespace vantor
