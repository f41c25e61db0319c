#include "Platform/Linux/GraphicsProperties.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace vantor {
namespace {

PropertyValue dataOf(std::string_view text) {
    PropertyValue::Data data;
    for (const char letter : text)
        data.push_back(static_cast<std::byte>(letter));
    return data;
}

/// Four bytes, the lowest first.
PropertyValue dataOf(std::uint32_t number) {
    PropertyValue::Data data;
    for (const int shift : {0, 8, 16, 24})
        data.push_back(static_cast<std::byte>(number >> shift));
    return data;
}

std::optional<PropertyValue> bytes(std::optional<std::uint64_t> count) {
    return count ? std::optional<PropertyValue>(*count) : std::nullopt;
}

std::optional<PropertyValue> freeBytes(std::optional<std::uint64_t> total,
                                       std::optional<std::uint64_t> used) {
    return total && used && *used <= *total ? bytes(*total - *used) : std::nullopt;
}

}  // namespace

// One by one: a list of them in braces takes the compiler ten times as long.

PropertyValue::Dictionary processorProperties(const GraphicsDevice& device,
                                              const std::string& model) {
    PropertyValue::Dictionary properties;
    setFigure(properties, "IOName", "display");
    setFigure(properties, "model", dataOf(model));
    // What tells one card from its twin, and stays so over restarts.
    setFigure(properties, "AAPL,slot-name", device.address);
    setFigure(properties, "vendor-id", dataOf(std::uint32_t{device.id.vendor}));
    setFigure(properties, "device-id", dataOf(std::uint32_t{device.id.device}));
    setFigure(properties, "class-code", dataOf(device.classCode));
    setFigure(properties, "driver", device.driver);
    if (device.isIntegrated)
        setFigure(properties, "built-in", dataOf(std::uint32_t{0}));
    return properties;
}

PropertyValue::Dictionary displayProperties(const DisplayConnector& connector) {
    PropertyValue::Dictionary properties;
    if (!connector.edid) {
        setFigure(properties, "DisplayProductName", connector.name);
        return properties;
    }
    const EDID& edid = *connector.edid;
    setFigure(properties, "DisplayProductID", std::int64_t{edid.product});
    setFigure(properties, "DisplaySerialNumber", std::int64_t{edid.serial});
    setFigure(properties, "DisplayVendorID", std::int64_t{edid.vendor});
    setFigure(properties, "DisplayProductName",
              edid.name.empty()
                  ? fmt::format("{} {:04X}", edidVendorLetters(edid.vendor), edid.product)
                  : edid.name);
    if (!edid.serialText.empty())
        setFigure(properties, "DisplaySerialString", edid.serialText);
    return properties;
}

void setFigure(PropertyValue::Dictionary& figures, const char* key,
               const std::optional<PropertyValue>& value) {
    const auto found = figures.find(std::string_view(key));
    if (value && found != figures.end())
        found->second = *value;
    else if (value)
        figures.emplace(key, *value);
    else if (found != figures.end())
        figures.erase(found);
}

void setFigures(PropertyValue::Dictionary& statistics, const GPUFigures& figures) {
    const auto& [total, used, sharedTotal, sharedUsed, load] = figures;
    setFigure(statistics, "vramUsedBytes", bytes(used));
    setFigure(statistics, "vramFreeBytes", freeBytes(total, used));
    setFigure(statistics, "gartSizeBytes", bytes(sharedTotal));
    setFigure(statistics, "gartUsedBytes", bytes(sharedUsed));
    setFigure(statistics, "gartFreeBytes", freeBytes(sharedTotal, sharedUsed));
    setFigure(statistics, "Device Utilization %",
              load ? std::optional<PropertyValue>(*load) : std::nullopt);
}

}  // namespace vantor
