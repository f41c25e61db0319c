#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "Platform/Clock.h"
#include "Platform/RegionalSettings.h"
#include "Platform/TimeZone.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Collectors/UptimeStatCollector.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"
#include "Targets/VantorBarCPU/Interface/TimeTexts.h"

// What changes in the dropdown while it is open: texts and graphs, never a row.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kModes = 5;  // that an opening brings up to date
constexpr double kTicksASecond = 100;
constexpr int kRowWidth = 225;

/// A text without heap, for figures that change each second.
template <class... Arguments>
void setText(StatInterfaceTextField& field, fmt::format_string<Arguments...> format,
             Arguments&&... arguments) {
    fmt::basic_memory_buffer<char, 64> text;
    fmt::format_to(std::back_inserter(text), format, std::forward<Arguments>(arguments)...);
    field.setStringValue(std::string_view(text.data(), text.size()));
}

/// The graph of a scale in a stack of them; a scale without one has nothing to paint.
void paintHistoryGraph(const VTRMenuItem& stack, int mode) {
    fmt::basic_memory_buffer<char, 32> key;
    fmt::format_to(std::back_inserter(key), "graph-{}", mode);
    if (const VTRMenuItem* const item = stack.itemWithKey({key.data(), key.size()}))
        item->historyGraph->setNeedsDisplay();
}

/// The graphs of the cores, while somebody looks at them.
void paintCoresOnScreen(const VTRMenuItem& stack) {
    for (const auto& core : stack.menuItemsOrdered())
        if (core->historyGraph && core->historyGraph->window() != nullptr)
            core->historyGraph->setNeedsDisplay();
}

double boottime() { return UptimeStatCollector::sharedUptimeCollector().boottime(); }

}  // namespace

void StatInterfaceCPU::cpuCollectorUpdatedForMode(int mode) {
    if (mode == 0)
        combinedItem()->historyGraph->setNeedsDisplay();
    if (!enabled())
        return;
    if (mode != 0) {
        paintHistoryGraph(*cpuHistoryItem_, mode);
        return;
    }
    graphItem_->historyGraph->setNeedsDisplay();
    showShares();
    const CPUStatCollector& cpu = CPUStatCollector::sharedCPUCollector();
    setText(*tasksItem_->field, "{}", cpu.taskCount());
    setText(*threadsItem_->field, "{}", cpu.threadCount());
    uptimeItem_->label->setStringValue(uptime());
    if (uptimeMenuOpen_)
        showUptime();
    for (const Item& stack : {coresNormalItem_, coresHyperItem_})
        paintCoresOnScreen(*stack);
}

/// Idle is what the rounded figures leave, so that the three lines add up.
void StatInterfaceCPU::showShares() {
    const statsample sample =
        CPUStatCollector::sharedCPUCollector().sampleAtIndex(0, StorageType::now);
    const double user = std::round(sample.values[0]), system = std::round(sample.values[1]);
    setText(*userItem_->field, "{:.0f}%", user);
    setText(*systemItem_->field, "{:.0f}%", system);
    setText(*idleItem_->field, "{:.0f}%", 100 - (user + system));
    const CPUWaits& waits = CPUStatCollector::sharedCPUCollector().waits();
    setText(*iowaitItem_->field, "{:.0f}%", std::round(waits.iowait));
    setText(*stealItem_->field, "{:.0f}%", std::round(waits.steal));
}

void StatInterfaceCPU::showUptime() {
    awakeItem_->field->setStringValue(awakeTime());
    sleepingItem_->field->setStringValue(sleepTime());
    if (bootTimeItem_->field->stringValue().empty()) {
        bootTimeItem_->field->setStringValue(bootTime());
        resizeMenuItemToContent(*bootTimeItem_, kRowWidth);
    }
    resizeMenuItemToContent(*awakeItem_, kRowWidth);
    resizeMenuItemToContent(*sleepingItem_, kRowWidth);
}

void StatInterfaceCPU::loadCollectorUpdatedForMode(int mode) {
    if (!enabled())
        return;
    if (mode != 0) {
        paintHistoryGraph(*loadHistoryItem_, mode);
        return;
    }
    const statsample sample =
        LoadStatCollector::sharedLoadCollector().sampleAtIndex(0, StorageType::now);
    loadAverageGraphItem_->historyGraph->setNeedsDisplay();
    for (std::size_t value = 0; value < loadValues_.size(); ++value)
        setText(*loadValues_[value], "{:.2f}", sample.values[value]);
}

void StatInterfaceCPU::forceUpdate() {
    for (int mode = 0; mode < kModes; ++mode) {
        cpuCollectorUpdatedForMode(mode);
        loadCollectorUpdatedForMode(mode);
        gpuCollectorUpdatedForMode(mode);
    }
}

void StatInterfaceCPU::processesUpdated(const PropertyValue::Dictionary& response) {
    const auto found = response.find("processes");
    const PropertyValue::Array* const records =
        found == response.end() ? nullptr : found->second.array();
    if (records == nullptr)
        return;
    const std::int64_t cores = CPUStatCollector::sharedCPUCollector().coreCount();
    const bool ofMachine = VTRIntegerForKey("CPU_AppFormat") == 1 && cores > 0;
    for (std::size_t index = 0; index < std::min(records->size(), processes_.size()); ++index) {
        static const PropertyValue::Dictionary kNothing;
        const PropertyValue::Dictionary* const record = (*records)[index].dictionary();
        const auto entry = [&](std::string_view key) {
            const auto& entries = record != nullptr ? *record : kNothing;
            const auto value = entries.find(key);
            return value == entries.end() ? PropertyValue() : value->second;
        };
        float percent = entry("c").floatValue();
        if (percent > 0 && ofMachine)
            percent /= static_cast<float>(cores);
        processes_[index].show(entry("name").stringValue(), percent);
    }
}

std::string StatInterfaceCPU::uptime() const {
    return formattedTime(ports().clock.now() - boottime());
}

std::string StatInterfaceCPU::awakeTime() const {
    const double running = CPUStatCollector::sharedCPUCollector().runningTime();
    if (running < 0 || boottime() < 0)
        return "";
    return formattedTime(std::min(ports().clock.now() - boottime(), running / kTicksASecond));
}

std::string StatInterfaceCPU::sleepTime() const {
    const double running = CPUStatCollector::sharedCPUCollector().runningTime();
    if (running < 0 || boottime() < 0)
        return "";
    const double up = ports().clock.now() - boottime();
    return formattedTime(up - std::min(up, running / kTicksASecond));
}

std::string StatInterfaceCPU::bootTime() const {
    if (boottime() < 0)
        return "";
    const PropertyValue language = VTRObjectForKey("language");
    const double local = boottime() + ports().timeZone.secondsFromGMT(boottime());
    return ports().regionalSettings.dateText(local, "EEEE d MMM, h:mm a",
                                             language ? std::optional(language.stringValue())
                                                      : std::nullopt);
}

}  // namespace vantor::inline VANTOR_MODULE
