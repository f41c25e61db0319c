#pragma once

#include <cstdint>

#include "Shared/Collectors/StatCollector.h"

namespace vantor::inline VANTOR_MODULE {

/// The load averages of the last one, five and fifteen minutes.
class LoadStatCollector final : public StatCollector {
public:
    static constexpr std::size_t sampleCount() noexcept { return 3; }

    explicit LoadStatCollector(const Ports& ports);

    static LoadStatCollector& sharedLoadCollector();
    /// Ends the shared collector, if there is one; the next use makes a new one.
    static void cleanupShared() noexcept;

    /// Whole seconds since boot; the raw clock where the boot time can't be read.
    std::uint64_t uptime() const noexcept;
    double latestSampleID() const noexcept override;

protected:
    void measure() override;
};

}  // namespace vantor::inline VANTOR_MODULE
