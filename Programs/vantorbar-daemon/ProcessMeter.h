#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/ProcessSource.h"
#include "Programs/vantorbar-daemon/ApplicationHeads.h"
#include "Programs/vantorbar-daemon/ProcessShares.h"

namespace vantor {

/// Whether the use of an application's processes is told together, under the topmost one.
enum class Hierarchy { separate, combined };

struct ProcessRecord {
    std::string name;
    double percent = 0;  // 100 is one processor
};

/// What processes did between the last two readings.
/// Shape:  keeps two readings and their room; only processes that are listed cost more than that.
/// Thread: one at a time.
class ProcessMeter {
public:
    ProcessMeter(ProcessSource& source, const Clock& clock) noexcept
        : source_(source), clock_(clock), heads_(source) {}

    /// False, and what was known stays, where there is no reading.
    bool takeReading();
    /// The next reading has none before it.
    void forget() noexcept { hasReading_ = false; }
    /// How long the last reading is ago; nothing before the first.
    std::optional<double> age() const noexcept;
    /// The busiest first, those that did the same by rising number. Empty after one reading.
    std::vector<ProcessRecord> busiest(std::size_t count, Hierarchy hierarchy);

private:
    void addUp(Hierarchy hierarchy);
    void rank(std::size_t count, Hierarchy hierarchy);
    void fillWithIdle(std::size_t count, Hierarchy hierarchy);
    std::size_t headOf(std::size_t place, Hierarchy hierarchy);

    ProcessSource& source_;
    const Clock& clock_;
    bool hasReading_ = false;
    ProcessesReading before_, now_;
    std::vector<ProcessShare> shares_;  // of now_
    ApplicationHeads heads_;
    std::vector<double> sums_;         // what is told under each of now_
    std::vector<std::size_t> ranked_;  // places in now_
};

}  // namespace vantor
