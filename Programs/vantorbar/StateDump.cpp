#include "Programs/vantorbar/StateDump.h"

#include <optional>
#include <string>

#include "Programs/Common/PropertyJSON.h"
#include "Programs/vantorbar/DropdownDump.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Collectors/UptimeStatCollector.h"
#include "Shared/VTRPreferences.h"

namespace vantor {
namespace {

using json = nlohmann::ordered_json;

json textOrNull(const std::optional<std::string>& text) {
    return text ? json(*text) : json(nullptr);
}

json slotState(const statsample& slot) {
    return {{"sampleID", slot.sampleID},
            {"time", slot.time},
            {"empty", slot.empty},
            {"values", json(std::vector<double>(slot.values.begin(), slot.values.end()))}};
}

/// From the newest slot to the last one that was ever filled.
json ringState(const SampleRing& ring) {
    std::size_t used = SampleRing::kSlots;
    while (used > 0 && ring.sampleID(used - 1) <= 0)
        --used;
    json slots = json::array();
    for (std::size_t position = 0; position < used; ++position)
        slots.push_back(slotState(ring.sampleAtIndex(position)));
    return slots;
}

json coreState(const CPUStatCollectorItem& core) {
    return {{"key", textOrNull(core.key)}, {"history", ringState(core.history())}};
}

/// The four rings of a collector or of an item.
template <class Rings>
json storagesState(const Rings& rings) {
    json storages;
    for (int type = 0; type < static_cast<int>(kStorageCount); ++type)
        storages[std::to_string(type)] = ringState(rings.storageForType(type));
    return storages;
}

json collectorState(const StatCollector& collector) {
    json rows = json::array();
    for (const sampleindexconfig& row : collector.sampleIndex())
        rows.push_back({{"sampleID", row.sampleID},
                        {"time", row.time},
                        {"nextTime", row.nextTime},
                        {"interval", row.interval}});
    return {{"sampleIndex", std::move(rows)},
            {"updateSequence", collector.updateSequence()},
            {"updateTime", collector.updateTime()},
            {"stopped", collector.stopped()},
            {"databaseEnabled", collector.databaseEnabled()},
            {"enabled", collector.enabled()},
            {"storages", storagesState(collector)}};
}

json cpuState(const CPUStatCollector& collector) {
    json state = collectorState(collector);
    json& items = state["items"] = json::array();
    for (std::size_t core = 0; core < collector.cpuCount(); ++core)
        items.push_back(coreState(collector.core(core)));
    json& physicalCores = state["physicalCores"] = nullptr;
    for (const auto& core : collector.physicalCores())
        physicalCores.push_back(coreState(*core));
    state["coreCount"] = collector.coreCount();
    state["hyperThreading"] = collector.hyperThreading();
    state["taskCount"] = collector.taskCount();
    state["threadCount"] = collector.threadCount();
    state["runningTime"] = collector.runningTime();
    return state;
}

json displaysState(const GPUStatCollectorItem& gpu) {
    json displays = json::array();
    for (const PropertyValue::Dictionary& display : gpu.displays)
        displays.push_back(jsonOfValue(display));
    return displays;
}

json gpuItemState(const GPUStatCollectorItem& gpu) {
    return {{"key", textOrNull(gpu.key)},         {"model", textOrNull(gpu.model)},
            {"intergrated", gpu.intergrated},     {"connected", gpu.connected},
            {"temporary", gpu.temporary()},       {"hasProcessorUsage", gpu.hasProcessorUsage()},
            {"totalyMemory", gpu.totalyMemory},   {"usedMemory", gpu.usedMemory()},
            {"freeMemory", gpu.freeMemory()},     {"processor", gpu.processor()},
            {"surfaceCount", gpu.surfaceCount()}, {"displays", displaysState(gpu)},
            {"storages", storagesState(gpu)}};
}

json gpuState(const GPUStatCollector& collector) {
    json state = collectorState(collector);
    state["fps"] = collector.fps();
    json& items = state["items"] = json::array();
    for (std::size_t index = 0; index < collector.items().size(); ++index)
        items.push_back(gpuItemState(collector.gpu(index)));
    return state;
}

json collectorStates(const ProcessContext& context) {
    json states = json::object();
    if (const CPUStatCollector* const cpu = context.existingCPUCollector())
        states["cpu"] = cpuState(*cpu);
    if (const LoadStatCollector* const load = context.existingLoadCollector())
        states["load"] = collectorState(*load);
    if (const UptimeStatCollector* const uptime = context.existingUptimeCollector())
        states["uptime"] = {{"boottime", uptime->boottime()}};
    if (const GPUStatCollector* const gpu = context.existingGPUCollector())
        states["gpu"] = gpuState(*gpu);
    return states;
}

}  // namespace

json programState(ProcessContext& context, VTRMenuExtra& extra, double length) {
    const VTRPreferences* const preferences = context.preferences();
    const auto flag = [&](bool (VTRPreferences::*reading)() const noexcept) {
        return preferences != nullptr && (preferences->*reading)();
    };
    return {{"collectors", collectorStates(context)},
            {"extra",
             {{"loaded", extra.state() == VTRMenuExtra::State::loaded}, {"length", length}}},
            {"preferences",
             {{"isMenubarDark", flag(&VTRPreferences::isMenubarDark)},
              {"increaseContrast", flag(&VTRPreferences::increaseContrast)}}},
            {"dropdown", dropdownState(extra)}};
}

}  // namespace vantor
