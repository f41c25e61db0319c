#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Simulated/Journal.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/ProcessContext.h"

namespace vantor::test {

/// Keeps what the world could notice, as texts.
class RecordedJournal final : public simulated::Journal {
public:
    void length(double length) override { lengths.push_back(length); }
    void repaint() override { ++repaints; }
    void notification(std::string_view center, std::string_view name,
                      const NotificationInfo&) override {
        notifications.push_back(std::string(center) + " " + std::string(name));
    }
    void systemLog(std::string_view text) override { systemLogLines.emplace_back(text); }
    void launch(std::string_view path) override { launches.emplace_back(path); }
    void logged(std::string_view text) override { logLines.emplace_back(text); }
    void daemon(std::string_view call, const PropertyValue::Array& arguments) override {
        std::string line(call);
        for (const PropertyValue& argument : arguments)
            line += " " + argument.stringValue();
        daemonCalls.push_back(std::move(line));
    }
    void measures(std::string_view collector, std::optional<int> sequence) override {
        measurements.push_back({std::string(collector), sequence});
    }
    void updated(std::string_view collector, int mode) override {
        updates.push_back({std::string(collector), mode});
    }
    void committed(std::string_view file, std::size_t statements, std::size_t failed) override {
        commits.push_back({std::string(file), statements, failed});
    }
    void extraLoaded(std::string_view) override { ++loaded; }
    void extraUnloaded(std::string_view) override { ++unloaded; }

    struct Measurement {
        std::string collector;
        std::optional<int> sequence;
    };
    struct Update {
        std::string collector;
        int mode;
    };
    struct Commit {
        std::string file;
        std::size_t statements, failed;
        bool operator==(const Commit&) const = default;
    };
    std::vector<double> lengths;
    int repaints = 0, loaded = 0, unloaded = 0;
    std::vector<std::string> notifications, systemLogLines, launches, logLines, daemonCalls;
    std::vector<Measurement> measurements;
    std::vector<Update> updates;
    std::vector<Commit> commits;
};

/// A scripted machine, and one world of the program on it.
struct World {
    explicit World(double start = simulated::SimulatedMachine::kStart)
        : machine(start, 0.002, &journal), context(machine.ports()) {}

    RecordedJournal journal;
    simulated::SimulatedMachine machine;
    ProcessContext context;
};

}  // namespace vantor::test
