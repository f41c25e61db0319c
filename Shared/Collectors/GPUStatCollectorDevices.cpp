#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "Foundation/UTF8.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Extensions/KOLIOKitUtilities.h"
#include "Shared/Platforms/PlatformController.h"
#include "Shared/Platforms/PlatformMac.h"

// How the collector finds the graphics processors in the registry, and reads what it finds there.

namespace vantor::inline VANTOR_MODULE {
namespace {

using Dictionary = PropertyValue::Dictionary;

std::string bytesOf(const PropertyValue::Data& data) {
    std::string bytes(data.size(), '\0');
    std::ranges::transform(data, bytes.begin(),
                           [](std::byte byte) { return static_cast<char>(byte); });
    return bytes;
}

/// Letters and digits beyond ASCII, in the scripts in which makers name their cards.
struct LetterRange {
    char32_t first, last;
};
constexpr LetterRange kLetters[] = {
    {0xAA, 0xAA},     {0xB5, 0xB5},    {0xBA, 0xBA},     {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2C1},    {0x370, 0x373},  {0x376, 0x377},   {0x386, 0x386},   {0x388, 0x3FF},
    {0x400, 0x481},   {0x48A, 0x52F},  {0x3041, 0x3096}, {0x30A1, 0x30FA}, {0x3400, 0x4DBF},
    {0x4E00, 0x9FFF}, {0xAC00, 0xD7A3}};

/// `letter` is one letter of UTF-8.
char32_t codePointOf(std::string_view letter) noexcept {
    const auto lead = static_cast<unsigned char>(letter[0]);
    if (letter.size() == 1)
        return lead;
    char32_t codePoint = lead & (0x7FU >> letter.size());
    for (const char byte : letter.substr(1))
        codePoint = codePoint << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    return codePoint;
}

bool isLetterOrDigit(char32_t letter) noexcept {
    if (letter < 0x80)
        return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= 'a' && letter <= 'z');
    return std::ranges::any_of(kLetters, [letter](const LetterRange& range) {
        return letter >= range.first && letter <= range.last;
    });
}

std::string lettersAndDigitsOf(std::string_view text) {
    std::string kept;
    while (!text.empty()) {
        const std::size_t length = utf8LetterLength(text);
        if (length > 0 && isLetterOrDigit(codePointOf(text.substr(0, length))))
            kept += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return kept;
}

bool isIntel(const std::optional<std::string>& model) noexcept {
    return modelContains(model, "intel");
}

std::optional<std::string> modelOf(const Dictionary& device) {
    const PropertyValue model =
        GPUStatCollector::convertString(propertyInDictionary(device, "model"));
    return model ? std::optional(model.stringValue()) : std::nullopt;
}

/// The model once more, by which a card is known that has nothing better.
PropertyValue modelInUTF8(const Dictionary& device) {
    const PropertyValue& model = propertyInDictionary(device, "model");
    const auto* const data = model.as<PropertyValue::Data>();
    if (data == nullptr)
        return model;
    std::string text = bytesOf(*data);
    return validUTF8Prefix(text).size() == text.size() ? PropertyValue(std::move(text))
                                                       : PropertyValue();
}

/// What a card is known by over runs; "" where there is nothing.
std::string keyOf(const Dictionary& device, const RegistryObject& object) {
    PropertyValue candidate;
    if (const auto above = KOLIOKitUtilities::dictionaryForParentAtIndex(2, object)) {
        const double deviceID =
            GPUStatCollector::convertValue(propertyInDictionary(*above, "device-id"));
        if (deviceID > 0)
            candidate = fmt::format("{:.0f}", deviceID);
    }
    if (const PropertyValue& slot = propertyInDictionary(device, "AAPL,slot-name"))
        candidate = GPUStatCollector::convertString(slot);
    if (!candidate)
        candidate = modelInUTF8(device);
    return lettersAndDigitsOf(candidate.stringValue());
}

/// Looks below the device for the object with the statistics; the memory is the device's own, or
/// that of the first child that tells it.
void readChildren(const RegistryObject& device, GPUStatCollectorItem& gpu, double& total) {
    auto children = KOLIOKitUtilities::childIteratorFromObject(device);
    while (const Dictionary* const child = children.next()) {
        if (total == 0)
            total = totalMemoryInProperties(*child);
        if (propertyInDictionary(*child, "PerformanceStatistics")) {
            gpu.registryEntryStats = children.object();
            return;
        }
    }
}

}  // namespace

double GPUStatCollector::convertValue(const PropertyValue& value) noexcept {
    const auto* const data = value.as<PropertyValue::Data>();
    if (data == nullptr)
        return std::abs(value.doubleValue());
    std::uint32_t number = 0;
    for (std::size_t byte = 0; byte < std::min(data->size(), sizeof(number)); ++byte)
        number |= std::to_integer<std::uint32_t>((*data)[byte]) << (8 * byte);
    return std::abs(static_cast<double>(static_cast<std::int32_t>(number)));
}

PropertyValue GPUStatCollector::convertString(const PropertyValue& value) {
    const auto* const data = value.as<PropertyValue::Data>();
    if (data == nullptr)
        return value;
    const bool isASCII = std::ranges::all_of(
        *data, [](std::byte byte) { return std::to_integer<int>(byte) < 0x80; });
    return isASCII ? PropertyValue(bytesOf(*data)) : PropertyValue();
}

double GPUStatCollector::convertCFNumber(const PropertyValue& number) noexcept {
    const double figure = number.doubleValue();
    const bool isNegativeWhole =
        number.isNumber() && figure < 0 && figure >= -0x1p63 && std::trunc(figure) == figure;
    // A counter that was stored as a signed number keeps its magnitude.
    return isNegativeWhole ? static_cast<double>(static_cast<std::uint64_t>(number.integerValue()))
                           : figure;
}

void GPUStatCollector::fetchGPUS() {
    bool isFirst = true;
    auto devices = KOLIOKitUtilities::iteratorWithServiceMatch("IOPCIDevice");
    while (const Dictionary* const device = devices.next())
        if (addGPU(*device, devices.object(), isFirst))
            isFirst = false;
    findIntegratedByName();
}

/// Whether the device is a graphics processor that is shown.
bool GPUStatCollector::addGPU(const Dictionary& device, const RegistryObject& object,
                              bool isFirst) {
    if (convertString(propertyInDictionary(device, "IOName")) != PropertyValue("display"))
        return false;
    std::optional<std::string> model = modelOf(device);
    if (PlatformController::currentPlatform().hideIntergratedGraphics() && isIntel(model))
        return false;
    const std::string key = keyOf(device, object);
    if (key.empty())
        return false;
    StatCollectorItem* const known = itemWithKey(key);
    auto& gpu =
        static_cast<GPUStatCollectorItem&>(known != nullptr ? *known : *newItemWithKey(key));
    gpu.registryEntry = object;
    gpu.intergrated = isFirst && !propertyInDictionary(device, "built-in").isNothing();
    gpu.model = std::move(model);
    double total = totalMemoryInProperties(device);
    readChildren(object, gpu, total);
    gpu.totalyMemory = total;
    return true;
}

/// Only a machine without an Intel processor goes by "built-in".
void GPUStatCollector::findIntegratedByName() {
    bool hasIntel = false;
    forEachGPU([&](GPUStatCollectorItem& gpu) { hasIntel = hasIntel || isIntel(gpu.model); });
    if (hasIntel)
        forEachGPU([](GPUStatCollectorItem& gpu) { gpu.intergrated = isIntel(gpu.model); });
}

}  // namespace vantor::inline VANTOR_MODULE
