#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ProcessSource.h"
#include "Platform/Simulated/SimulatedMainQueue.h"

namespace vantor::simulated {

/// Processes that do only what they are told to. The machine started with the queue.
class SimulatedProcessSource final : public ProcessSource {
public:
    static constexpr double kTicksPerSecond = 100;

    explicit SimulatedProcessSource(const SimulatedMainQueue& queue) noexcept
        : queue_(queue), boot_(queue.now()) {}

    /// A process that starts now, in a session of its own.
    void start(std::int32_t id, std::string_view name, std::int32_t parent = 1) {
        ProcessReading process{.id = id, .parent = parent, .session = id};
        process.startTicks = ticksSinceBoot();
        process.nameSize = std::min(name.size(), process.nameBytes.size());
        std::copy_n(name.data(), process.nameSize, process.nameBytes.data());
        processes_[id] = {process, ApplicationID::none};
    }
    void end(std::int32_t id) { processes_.erase(id); }
    void spend(std::int32_t id, std::uint64_t ticks) { processes_.at(id).reading.ticks += ticks; }
    void setSession(std::int32_t id, std::int32_t session) {
        processes_.at(id).reading.session = session;
    }
    void setApplication(std::int32_t id, ApplicationID application) {
        processes_.at(id).application = application;
    }
    void setKernelThread(std::int32_t id) { processes_.at(id).reading.isKernelThread = true; }
    /// It can't be read for as long as that lasts.
    void setHidden(std::int32_t id, bool hidden) { processes_.at(id).hidden = hidden; }
    void setFailing(bool failing) noexcept { failing_ = failing; }

    int readings() const noexcept { return readings_; }
    int names() const noexcept { return names_; }
    int applications() const noexcept { return applications_; }

    double ticksPerSecond() const noexcept override { return kTicksPerSecond; }
    std::uint64_t ticksSinceBoot() const noexcept override {
        return static_cast<std::uint64_t>(std::llround((queue_.now() - boot_) * kTicksPerSecond));
    }
    bool read(std::vector<ProcessReading>& into) override {
        into.clear();
        ++readings_;
        for (auto& [id, process] : processes_) {
            process.reading.time = queue_.now();
            if (!failing_ && !process.hidden)
                into.push_back(process.reading);
        }
        return !failing_;
    }
    std::string displayName(const ProcessReading& process) override {
        ++names_;
        return std::string(process.name());
    }
    ApplicationID application(const ProcessReading& process) override {
        ++applications_;
        const auto found = processes_.find(process.id);
        return found == processes_.end() ? ApplicationID::none : found->second.application;
    }

private:
    struct Process {
        ProcessReading reading;
        ApplicationID application = ApplicationID::none;
        bool hidden = false;
    };

    const SimulatedMainQueue& queue_;
    double boot_;
    std::map<std::int32_t, Process> processes_;
    bool failing_ = false;
    int readings_ = 0, names_ = 0, applications_ = 0;
};

}  // namespace vantor::simulated
