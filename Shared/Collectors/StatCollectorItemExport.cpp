#include <algorithm>

#include <fmt/format.h>

#include "Shared/Collectors/StatCollectorItem.h"

// An item's samples as texts, for a reader that asks for what it hasn't seen yet.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kNewestOnly = -1;

bool isDivided(const SampleConfig& config, std::string_view key, int protocol) {
    const auto& protocols = config.xmlSampleDivideProtocols;
    const auto& excluded = config.xmlSampleDivideExcludeKeys;
    return config.xmlSampleDivide &&
           (!protocols || std::ranges::find(*protocols, protocol) != protocols->end()) &&
           std::ranges::find(excluded, key) == excluded.end();
}

}  // namespace

PropertyValue::Dictionary StatCollectorItem::xmlSampleFromSample(const statsample& sample,
                                                                 std::size_t, int protocol) const {
    PropertyValue::Dictionary exported;
    for (const auto& [name, position] : config.xmlSampleKeys) {
        double value = sample.values[static_cast<std::size_t>(position)];
        if (isDivided(config, name, protocol))
            value /= *config.xmlSampleDivide;
        exported[std::string(name)] = fmt::format("{:.2f}", value);
    }
    if (sample.empty != 0)
        exported["empty"] = true;
    exported["t"] = fmt::format("{:.0f}", sample.time);
    return exported;
}

std::vector<PropertyValue::Dictionary>
StatCollectorItem::samplesSinceID(double sampleID, StorageType type, int protocol) const {
    std::vector<PropertyValue::Dictionary> samples;
    const auto add = [&](std::size_t position, double reportedID) {
        samples.push_back(xmlSampleFromSample(sampleAtIndex(position, type), position, protocol));
        samples.back()["id"] = NSDouble(reportedID).stringValue();
    };
    if (sampleID == kNewestOnly) {
        add(0, kNewestOnly);
        return samples;
    }
    for (std::size_t position = SampleRing::kSlots; position-- > 0;)
        if (const double slotID = sampleAtIndex(position, type).sampleID; slotID > sampleID)
            add(position, slotID);
    return samples;
}

}  // namespace vantor::inline VANTOR_MODULE
