#include "Shared/Collectors/CPUStatCollector.h"

#include <algorithm>
#include <utility>

#include "Platform/Clock.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::int64_t kMostCores = 64;
constexpr std::int64_t kMostItems = 1024;  // for what a machine only says of itself

std::int64_t believableCount(std::int64_t cores) noexcept { return cores > kMostCores ? 0 : cores; }

/// A reading is compared with the one before it; the first of all has none.
constexpr double kIDWithoutBaseline = 1;

double allTicks(const ProcessorTicks& ticks) noexcept {
    const double sum = static_cast<double>(ticks.user) + static_cast<double>(ticks.system) +
                       static_cast<double>(ticks.idle) + static_cast<double>(ticks.nice);
    return static_cast<double>(static_cast<std::int64_t>(sum));
}

}  // namespace

CPUShares& CPUShares::operator+=(const CPUShares& other) noexcept {
    user += other.user;
    system += other.system;
    nice += other.nice;
    return *this;
}

CPUShares sharesBetween(const ProcessorTicks& before, const ProcessorTicks& after) noexcept {
    // Subtract in the counter's own 32 bits, so that one that wrapped comes out right; add up in
    // 64, where four of them always fit.
    const std::uint32_t user = after.user - before.user;
    const std::uint32_t system = after.system - before.system;
    const std::uint32_t nice = after.nice - before.nice;
    const std::uint32_t idle = after.idle - before.idle;
    const std::uint64_t total = std::uint64_t{user} + system + nice + idle;
    if (total == 0)
        return {};
    const auto percent = [all = static_cast<float>(total)](std::uint32_t ticks) {
        return static_cast<float>(ticks) / all * 100;
    };
    return {percent(user), percent(system), percent(nice)};
}

CPUWaits waitsBetween(const ProcessorWaits& before, const ProcessorWaits& after) noexcept {
    if (after.all <= before.all)
        return {};
    const auto percent = [all = after.all - before.all](std::uint64_t from, std::uint64_t to) {
        const std::uint64_t part = to > from ? std::min(to - from, all) : 0;
        return static_cast<double>(part) / static_cast<double>(all) * 100;
    };
    return {percent(before.iowait, after.iowait), percent(before.steal, after.steal)};
}

CPUStatCollector::CPUStatCollector(const Ports& ports)
    : StatCollector(ports, "cpu", "<CPUStatCollector>", sampleCount()) {
    setTablePrefix("cpu");
    mutableConfig() = {
        .addSampleIDKeys = {"sample", "id"},
        .addSampleMap =
            {{"u", 0}, {"user", 0}, {"s", 1}, {"p", 1}, {"system", 1}, {"n", 2}, {"nice", 2}},
        .sampleKeys = {{"user", 0}, {"system", 1}, {"nice", 2}},
        .emptySampleKeys = {"user", "system", "nice"},
        .xmlSampleKeys = {{"u", 0}, {"s", 1}, {"n", 2}},
        .sqlInsert = "insert into %@ (empty, sample, time, user, system, nice) "
                     "values (?, ?, ?, ?, ?, ?)",
        .sqlInsertKeys = {"empty", "sample", "time", "user", "system", "nice"},
        .sqlCreate = "create table %@ (sample double PRIMARY KEY NOT NULL, time double NOT NULL, "
                     "empty integer NOT NULL, user double NOT NULL, system double NOT NULL, "
                     "nice double NOT NULL)",
        .sqlCreateLong = "create table %@ (sample double, time double, empty integer, "
                         "user double, system double, nice double)"};

    const std::int64_t logical = logicalCoreCount(), physical = physicalCoreCount();
    hyperThreading_ = logical >= 1 && physical >= 1 && logical == physical * 2;
    for (std::int64_t core = 0; hyperThreading_ && core < physical; ++core)
        physicalCores_.push_back(std::make_unique<CPUStatCollectorItem>());
}

CPUStatCollector::~CPUStatCollector() = default;

CPUStatCollector& CPUStatCollector::sharedCPUCollector() {
    return ProcessContext::current().cpuCollector();
}

void CPUStatCollector::cleanupShared() noexcept {
    ProcessContext& context = ProcessContext::current();
    if (CPUStatCollector* const collector = context.existingCPUCollector())
        collector->cleanup();
    context.dropCPUCollector();
}

void CPUStatCollector::setup() {
    const ProcessorCounters& counters = ports().processorCounters;
    coreCount_ = counters.configuredCPUs();
    previous_.resize(counters.cpuCount());
    const auto counted = std::clamp(coreCount_, std::int64_t{0}, kMostItems);
    const std::size_t cores = std::max(previous_.size(), static_cast<std::size_t>(counted));
    for (std::size_t cpu = 0; cpu < cores; ++cpu) {
        auto item = std::make_unique<CPUStatCollectorItem>();
        cores_.push_back(item.get());
        mutableItems().push_back(std::move(item));
    }
    ports().processorCounters.readTicks(previous_);
    current_ = previous_;
    previousWaits_ = counters.waits();
}

std::int64_t CPUStatCollector::physicalCoreCount() const noexcept {
    return believableCount(ports().processorCounters.physicalCores());
}

std::int64_t CPUStatCollector::logicalCoreCount() const noexcept {
    return believableCount(ports().processorCounters.logicalCores());
}

cpu_container CPUStatCollector::dataForCPU(std::size_t index) const noexcept {
    const bool isRead = index < previous_.size();
    return {isRead ? previous_[index] : ProcessorTicks{}, &cores_[index]->history()};
}

void CPUStatCollector::measure() {
    nextSampleID();
    ports().processorCounters.readTicks(current_);  // without a reading all shares are 0
    const ProcessorWaits waits = ports().processorCounters.waits();
    waits_ = waitsBetween(std::exchange(previousWaits_, waits), waits);
    const CPUShares sum = measureCores();
    if (hyperThreading_)
        measurePhysicalCores();
    storeMean(sum);
    runningTime_ = current_.empty() ? -1 : allTicks(current_[0]);
    updateProcessInfo();
    tellDelegates(0);
}

CPUShares CPUStatCollector::measureCores() noexcept {
    const bool hasBaseline = sampleIndex()[0].sampleID != kIDWithoutBaseline;
    CPUShares sum;
    for (std::size_t cpu = 0; cpu < current_.size(); ++cpu) {
        const CPUShares shares =
            hasBaseline ? sharesBetween(previous_[cpu], current_[cpu]) : CPUShares{};
        cores_[cpu]->addSample(shares.user, shares.system, shares.nice);
        sum += shares;
    }
    previous_ = current_;  // same size: copies, doesn't allocate
    return sum;
}

/// The two threads of a core stand side by side; nice isn't kept at this level.
void CPUStatCollector::measurePhysicalCores() noexcept {
    const auto newest = [this](std::size_t cpu, std::size_t value) {
        return cpu < cores_.size() ? cores_[cpu]->history().values(0)[value] : 0;
    };
    for (std::size_t core = 0; core < physicalCores_.size(); ++core) {
        const auto mean = [&](std::size_t value) {
            return static_cast<float>((newest(2 * core, value) + newest(2 * core + 1, value)) *
                                      0.5);
        };
        physicalCores_[core]->addSample(mean(0), mean(1), 0);
    }
}

void CPUStatCollector::storeMean(const CPUShares& sum) noexcept {
    const auto mean = [cores = coreCount_](float total) {
        return cores > 0 ? static_cast<double>(total / static_cast<float>(cores)) : 0.0;
    };
    SampleRing& ring = historyNow();
    PushSamples(ring);
    const std::span<double> values = ring.mutableValues(0);
    values[0] = mean(sum.user);
    values[1] = mean(sum.system);
    values[2] = mean(sum.nice);
    ring.setSampleID(0, sampleIndex()[0].sampleID);
    ring.setEmpty(0, 0);
    ring.setTime(0, ports().clock.now());
}

void CPUStatCollector::updateProcessInfo() noexcept {
    processCounts_ = ports().processorCounters.readProcessCounts();
}

}  // namespace vantor::inline VANTOR_MODULE
