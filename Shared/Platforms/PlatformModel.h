#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

/// A machine that is known by its model identifier.
struct PlatformModel {
    enum class Base : std::uint8_t { mac, iMac, macPro };

    static constexpr std::string_view kNoVariation = "";
    static constexpr std::string_view kVariationBySerial = "by serial";

    std::string_view identifier;
    std::string_view name;
    double screenSize;     // inches across, 0 without a built-in screen
    double maximumMemory;  // megabytes, 0 where it isn't known
    std::int64_t memorySlots;
    std::string_view icon;
    Base base;
    std::string_view variation;  // the period of production, or one of the two above
    std::size_t sensorCount;     // sensors that the model is known to have
    std::array<std::string_view, 2> sensorKeys;  // shown by default; "" where there is no more

    std::vector<std::string> defaultSensorKeys() const;
    /// The period of production of the machine with this serial tail.
    std::optional<std::string> variationName(std::string_view serialTail) const;
};

/// All of them.
std::span<const PlatformModel> platformModels() noexcept;

/// The identifier as the name of a class: "MacBookPro8_2" of "MacBookPro8,2".
std::string platformClassName(std::string_view modelIdentifier);

/// Null for a machine that isn't known.
const PlatformModel* platformModelNamed(std::string_view className);

}  // namespace vantor::inline VANTOR_MODULE
