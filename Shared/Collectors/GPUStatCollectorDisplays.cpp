#include <string_view>

#include <fmt/format.h>

#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Extensions/KOLIOKitUtilities.h"

// How the collector finds which displays hang on which graphics processor.

namespace vantor::inline VANTOR_MODULE {
namespace {

using Dictionary = PropertyValue::Dictionary;

constexpr int kMostParents = 10;

/// Properties of a display, and the keys under which they are kept.
struct DisplayProperty {
    std::string_view property;
    const char* key;
};
constexpr DisplayProperty kDisplayProperties[] = {{"DisplayProductID", "product-id"},
                                                  {"DisplaySerialNumber", "serial"},
                                                  {"IODisplayGUID", "guid"},
                                                  {"IODisplayLocation", "location"},
                                                  {"DisplaySerialString", "serial-string"},
                                                  {"DisplayProductName", "display-name"},
                                                  {"DisplayVendorID", "vendor"}};

/// The graphics processor above a plug; null where there is none near.
RegistryObject processorAbove(const RegistryObject& plug) {
    RegistryObject object = plug;
    for (int step = 0; step < kMostParents && object; ++step) {
        object = KOLIOKitUtilities::parentAtIndex(1, object);
        const PropertyValue& name = KOLIOKitUtilities::property("IOName", object);
        if (GPUStatCollector::convertString(name) == PropertyValue("display"))
            return object;
    }
    return nullptr;
}

/// What the window server knows of the display, and the registry doesn't.
void describeByScreen(const Screen& screen, Dictionary& display) {
    if (!screen.productNames.empty())
        display["display-name"] = screen.productNames.front().second;
    if (screen.resolution)
        display["ppi"] = screen.resolution->width;
    if (screen.size)
        display["resolution"] = fmt::format("{{{}, {}}}", screen.size->width, screen.size->height);
}

Dictionary descriptionOf(const RegistryObject& display, const Dictionary& properties,
                         const std::vector<Screen>& screens) {
    Dictionary description;
    for (const auto& [property, key] : kDisplayProperties)
        if (const PropertyValue& value = propertyInDictionary(properties, property))
            description[key] = value;
    for (const Screen& screen : screens)
        if (screen.location && KOLIOKitUtilities::objectAtPath(*screen.location) == display)
            describeByScreen(screen, description);
    return description;
}

}  // namespace

void GPUStatCollector::updateDisplays() {
    forEachGPU([](GPUStatCollectorItem& gpu) { gpu.displays.clear(); });
    const std::vector<Screen> screens = ports().displays.screens();
    auto plugs = KOLIOKitUtilities::iteratorWithServiceMatch("IODisplayConnect");
    while (plugs.next() != nullptr) {
        const RegistryObject device = processorAbove(plugs.object());
        if (!device)
            continue;
        auto displays = KOLIOKitUtilities::childIteratorFromObject(plugs.object());
        while (const Dictionary* const properties = displays.next())
            addDisplay(displays.object(), *properties, device, screens);
    }
}

void GPUStatCollector::addDisplay(const RegistryObject& display, const Dictionary& properties,
                                  const RegistryObject& device,
                                  const std::vector<Screen>& screens) {
    forEachGPU([&](GPUStatCollectorItem& gpu) {
        if (gpu.registryEntry == device)
            gpu.displays.push_back(descriptionOf(display, properties, screens));
    });
}

}  // namespace vantor::inline VANTOR_MODULE
