#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Simulated/SimulatedRegistry.h"

namespace vantor::test {

inline PropertyValue::Data dataOf(std::string_view text) {
    PropertyValue::Data data;
    for (const char letter : text)
        data.push_back(static_cast<std::byte>(letter));
    return data;
}

/// Four bytes, the lowest first.
inline PropertyValue::Data dataOf(std::uint32_t number) {
    PropertyValue::Data data;
    for (const int shift : {0, 8, 16, 24})
        data.push_back(static_cast<std::byte>(number >> shift));
    return data;
}

/// A scripted graphics processor two bridges below the root. The IDs of its objects begin with its
/// number: 10 and 11 are the bridges of number 1, 12 the device, 13 the driver, 14 the plug and 15
/// the display.
struct Card {
    std::uint64_t number = 1;
    PropertyValue model = dataOf("AMD Radeon R9 M370X");
    PropertyValue slot = "Slot-1";
    PropertyValue::Dictionary properties{};  // further ones of the device
    PropertyValue::Dictionary above{};       // of the second parent
    PropertyValue::Dictionary statistics{};  // of the driver
    PropertyValue::Dictionary driver{};      // further ones of the driver
    std::optional<PropertyValue::Dictionary> display = PropertyValue::Dictionary{};

    std::uint64_t id(std::uint64_t object) const { return number * 10 + object; }
};

inline simulated::RegistryNode nodeOf(const Card& card) {
    const std::string name = std::to_string(card.number);
    PropertyValue::Dictionary device = card.properties;
    device.emplace("IOName", "display");
    if (card.model)
        device.emplace("model", card.model);
    if (card.slot)
        device.emplace("AAPL,slot-name", card.slot);
    PropertyValue::Dictionary driver = card.driver;
    driver.emplace("PerformanceStatistics", card.statistics);
    std::vector<simulated::RegistryNode> children{
        {card.id(3), "IOAccelerator", "driver" + name, driver, {}}};
    if (card.display)
        children.push_back({card.id(4),
                            "IODisplayConnect",
                            "plug" + name,
                            {},
                            {{card.id(5), "IODisplay", "display" + name, *card.display, {}}}});
    return {card.id(0),
            "IOPCIHostBridge",
            "host" + name,
            card.above,
            {{card.id(1),
              "IOPCIDevice",
              "bridge" + name,
              {{"IOName", "pci-bridge"}},
              {{card.id(2), "IOPCIDevice", "card" + name, device, std::move(children)}}}}};
}

inline simulated::RegistryNode graphicsTree(const std::vector<Card>& cards) {
    simulated::RegistryNode root{1, "IORegistryEntry", "Root", {}, {}};
    for (const Card& card : cards)
        root.children.push_back(nodeOf(card));
    return root;
}

}  // namespace vantor::test
