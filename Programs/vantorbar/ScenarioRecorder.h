#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "Foundation/NotificationCenter.h"
#include "Platform/LoadAverages.h"
#include "Platform/Ports.h"
#include "Platform/ProcessorCounters.h"

namespace vantor {

/// Listens to what a program reads of its machine, and tells it as a scenario that replays to the
/// same figures.
///
/// Each reading is put at the whole second for which it was made, followed by a stall that makes
/// the replay as late for that second as the program was. Graphics processors are looked at
/// whenever the program is about to read them; where they changed, the replay has that as a change
/// of the displays, after which it measures once more than the program did.
/// Thread: that of the program's main queue. Outlives the program that runs on its ports.
class ScenarioRecorder {
public:
    /// Takes down how the machine is now; this is the start of the scenario.
    explicit ScenarioRecorder(const Ports& ports);
    ~ScenarioRecorder();

    /// The ports for the program to run on.
    Ports ports() noexcept;

    /// What was heard since the start, as a scenario of that length.
    nlohmann::ordered_json scenario(double seconds) const;

private:
    class Counters;
    class Loads;
    class Measurements;

    /// What was read for one whole second, by its place in main-queue time.
    struct Moment {
        std::optional<std::vector<ProcessorTicks>> ticks;
        std::optional<ProcessCounts> counts;
        std::optional<FixedLoads> loads;
        nlohmann::ordered_json graphics = nlohmann::ordered_json::object();  // what changed
        double lateness = 0;
    };

    double mainTime() const noexcept;
    Moment& momentNow();
    void noteClockStep();
    nlohmann::ordered_json changedGraphics();
    void addEvent(double at, nlohmann::ordered_json event);
    void fallAsleep() noexcept;
    void wakeUp();

    Ports ports_;
    std::unique_ptr<Counters> counters_;
    std::unique_ptr<Loads> loads_;
    std::unique_ptr<Measurements> measurements_;
    double start_;  // seconds since 1970
    double monotonicStart_;
    double stepped_ = 0;  // seconds that the wall clock has moved beyond the monotonic one
    std::optional<double> sleepBegan_;  // main-queue time, while asleep
    double awakeSince_ = 0;             // main-queue time
    nlohmann::ordered_json graphics_;  // as it was last seen
    nlohmann::ordered_json machine_;
    nlohmann::ordered_json preferences_;
    std::map<double, Moment> moments_;
    std::multimap<double, nlohmann::ordered_json> events_;
    Observation willSleep_, didWake_, theme_, contrast_;
    bool dark_, contrastOn_;
};

}  // namespace vantor
