#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "Platform/Clock.h"
#include "Platform/SystemLog.h"
#include "Platform/Witness.h"
#include "Platform/WorkQueues.h"
#include "Shared/Collectors/StatCollector.h"

// The self-arming tick of a collector and the schedule of its scales.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kGridSeconds = 6;
constexpr int kLongestCountUp = 12;
constexpr double kLongestDelaySeconds = 2;
constexpr double kDatabaseAfterWakeSeconds = 60;
constexpr double kEverySlotInterval = 300;  // the long-term scale, whose every slot counts

/// A slot of a row at least one before `cutoff`, from which the rest is stepped through: a row
/// whose last sample is decades old doesn't hold anybody up. Slots are whole seconds, so this is
/// exact.
double lastSlotLongBefore(double cutoff, const sampleindexconfig& row) noexcept {
    const double slots = std::floor((cutoff - row.time) / row.interval) - 1;
    return slots > 0 ? row.time + slots * row.interval : row.time;
}

}  // namespace

void StatCollector::addDelegate(StatCollectorDelegate& delegate) {
    if (std::ranges::find(delegates_, &delegate) != delegates_.end())
        return;
    delegates_.push_back(&delegate);
    if (delegates_.size() >= 2)
        ports_.systemLog.write(fmt::format("multiiple delegates {}", description_));
}

void StatCollector::removeDelegate(StatCollectorDelegate& delegate) noexcept {
    std::erase(delegates_, &delegate);
}

double StatCollector::startTimeForInterval(float) const noexcept {
    return std::ceil(ports_.clock.now() / kGridSeconds) * kGridSeconds;
}

void StatCollector::checkNextTimeAtIndex(int index) noexcept {
    sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(index)];
    if (row.nextTime == 0)
        row.nextTime = startTimeForInterval(kGridSeconds) + row.interval;
}

double StatCollector::nextTimeForType(int type, float interval) const noexcept {
    const sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(type)];
    if (row.nextTime > 0)
        return row.nextTime;
    const double last = lastTimeForType(type);
    if (last > 0)
        return last + (interval == 6.0F ? 2.0 : 1.0) * static_cast<double>(interval);
    return startTimeForInterval(kGridSeconds) + static_cast<double>(interval);
}

void StatCollector::startLogging() {
    settleHistory();
    ports_.mainQueue.async([collector = self_.handle()] {
        StatCollector* const self = collector.get();
        if (self == nullptr)
            return;
        for (int index = 1; index < kMaximumSampleIndex; ++index)
            self->checkNextTimeAtIndex(index);
        const double now = self->ports_.clock.now();
        self->updateTime_ = std::ceil(now);
        const double delay = self->updateTime_ - now;
        // Counts up to 0 as the first hour sample falls due.
        self->updateSequence_ = -static_cast<int>(self->sampleIndex_[1].nextTime - now);
        if (self->updateSequence_ < -kLongestCountUp || self->updateSequence_ > 0)
            self->updateSequence_ = 0;
        self->armTick(delay == 0 ? 1 : delay);
    });
}

void StatCollector::armTick(double delaySeconds) {
    ports_.mainQueue.after(delaySeconds, [collector = self_.handle()] {
        if (StatCollector* const self = collector.get())
            self->updateSamplesAndLogging();
    });
}

void StatCollector::updateSamplesAndLogging() {
    if (stopped_)
        return;
    if (!threadedUpdating()) {
        measureIfWanted();
        return;
    }
    // No collector of this program measures off the main queue; one that does must keep itself
    // alive until its work there is done.
    ports_.workQueues.globalAsync([collector = self_.handle()] {
        if (StatCollector* const self = collector.get())
            self->measureIfWanted();
    });
}

void StatCollector::measureIfWanted() {
    if (shouldUpdateStateForSequence(updateSequence_))
        updateStatsForSequence(updateSequence_);
    ports_.mainQueue.async([collector = self_.handle()] {
        if (StatCollector* const self = collector.get())
            self->finishTick();
    });
}

bool StatCollector::shouldUpdateStateForSequence(int sequence) {
    for (StatCollectorDelegate* const delegate : delegates_)
        if (delegate->collectorShouldUpdateStateForSequence(*this, sequence).value_or(false))
            return true;
    return delegates_.empty();  // without an audience the measuring goes on
}

void StatCollector::updateStatsForSequence(int sequence) {
    measuredSequence_ = sequence;
    updateStats();
    measuredSequence_.reset();
}

void StatCollector::updateStats() {
    if (ports_.witness != nullptr)
        ports_.witness->measures(name_, measuredSequence_);
    measure();
}

void StatCollector::tellDelegates(int mode) {
    for (std::size_t index = 0; index < delegates_.size(); ++index) {
        if (ports_.witness != nullptr)
            ports_.witness->updated(name_, mode);
        delegates_[index]->collectorUpdatedForMode(*this, mode);
    }
}

void StatCollector::finishTick() {
    const bool isDatabaseDue = automaticSampleUpdates_ && rollUpDueScales();
    if (isDatabaseDue && (dbpath() || dbpathLong()))
        runDatabaseQueue();
    ++updateSequence_;
    armNextTick();
}

/// Whether a scale was among them in whose rhythm the history file is written.
bool StatCollector::rollUpDueScales() {
    bool isDatabaseDue = false;
    for (int index = 1; index < kMaximumSampleIndexWithLong; ++index)
        if (updateSequence_ >= 0 &&
            updateTime_ >= sampleIndex_[static_cast<std::size_t>(index)].nextTime &&
            updateSample(index) && (index == kDayIndex || index == kLongTermIndex))
            isDatabaseDue = true;
    return isDatabaseDue;
}

/// A tick never stands for the same whole second twice, but a slow one may skip one.
void StatCollector::armNextTick() {
    const double now = ports_.clock.now();
    const double next = std::ceil(now);
    updateTime_ = next == updateTime_ ? next + 1 : next;
    double delay = updateTime_ - now;
    if (delay < 0)
        delay = next - now + 1;
    armTick(std::min(delay, kLongestDelaySeconds));
}

bool StatCollector::updateSample(int index) {
    if (index == kLongTermIndex && !dbpathLong())
        return false;
    sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(index)];
    if (updateTime_ < row.nextTime)
        return false;
    if (updateTime_ == row.nextTime) {
        const double due = row.nextTime;
        row.sampleID = insertSampleWithIndex(index, row.sampleID, due);
        row.time = due;
        row.nextTime = due + row.interval;
    } else {
        fillGapsAtIndex(index);  // missed: a gap, never a late sample
    }
    tellDelegates(index);
    return true;
}

double StatCollector::insertSampleWithIndex(int index, double identifier, double time) {
    if (index < 1 || index >= kMaximumSampleIndex)
        return identifier;
    SampleFields sample = rolledUpSample(index, time);
    sample.set("time", time);  // the scheduled time, not the clock's
    writeScaleSample(sample, index, identifier + 1);
    return identifier + 1;
}

void StatCollector::writeScaleSample(SampleFields& sample, int index, double sampleID) {
    for (SampleFields& item : sample.items)
        item.set("sample", sampleID);
    sample.set("sample", sampleID);
    addScaleSample(sample, index);
    insertSample(sample, index);
}

void StatCollector::fillGapsAtIndex(int index) {
    sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(index)];
    if (row.time == 0 || row.interval == 0) {
        if (row.nextTime > 0)
            row.nextTime += row.interval;
        return;
    }
    addGaps(index, ports_.clock.now());
    row.nextTime = row.time + row.interval;
}

/// Up to and with that time, which isn't past now.
void StatCollector::addGaps(int index, double until) {
    sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(index)];
    const double cutoff =
        ports_.clock.now() - static_cast<double>(SampleRing::kSlots) * row.interval;
    const bool skips = row.interval != kEverySlotInterval;
    const double last = skips ? lastSlotLongBefore(cutoff, row) : row.time;
    for (double time = last + row.interval; time <= until; time += row.interval) {
        if (time < cutoff && skips)
            continue;
        row.sampleID += 1;
        row.time = time;
        const SampleFields gap = emptySampleWithIdentifier(row.sampleID, time);
        if (index < kMaximumSampleIndex)
            addScaleSample(gap, index);
        insertSample(gap, index);
    }
}

void StatCollector::fillGaps() {
    for (int index = 1; index < kMaximumSampleIndexWithLong; ++index)
        fillGapsAtIndex(index);
}

void StatCollector::sleep() {
    databaseEnabled_ = false;
    ports_.mainQueue.cancel(enableDatabaseCall_);
}

void StatCollector::wake() {
    enableDatabaseCall_ =
        ports_.mainQueue.after(kDatabaseAfterWakeSeconds, [collector = self_.handle()] {
            if (StatCollector* const self = collector.get())
                self->enableDatabase();
        });
}

void StatCollector::cleanup() noexcept {
    stopped_ = true;
    queue_.reset();
    delegates_.clear();
}

}  // namespace vantor::inline VANTOR_MODULE
