#pragma once

#include <atomic>

#include "Shared/Collectors/StatCollector.h"

namespace vantor::inline VANTOR_MODULE {

/// When the machine started, now and before. A collector in name: it has no samples and no tick,
/// and its history is one table with a row for each start.
/// Thread: any for `boottime`; loading may happen elsewhere before anybody else uses it.
class UptimeStatCollector final : public StatCollector {
public:
    explicit UptimeStatCollector(const Ports& ports);

    static UptimeStatCollector& sharedUptimeCollector();
    /// Ends the shared collector, if there is one; the next use makes a new one.
    static void cleanupShared() noexcept;

    /// It has none of the tables of samples.
    std::optional<std::string_view> tableAtIndex(int) const noexcept override {
        return std::nullopt;
    }
    bool prepareDatabase(bool result) override;

    /// Reads the start and records it.
    void loadUptime();
    void addToDatabase();

    double uptime() const noexcept { return -1; }
    /// Seconds since 1970; -1 until it is loaded, 0 where it can't be read.
    double boottime() const noexcept { return boottime_; }

protected:
    void measure() override {}

private:
    std::atomic<double> boottime_{-1};
};

}  // namespace vantor::inline VANTOR_MODULE
