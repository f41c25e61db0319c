#include "Programs/vantorbar/RecordedGraphics.h"

#include <cmath>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "Foundation/Base64.h"
#include "Platform/Displays.h"
#include "Platform/GraphicsControl.h"
#include "Platform/Registry.h"

namespace vantor {
namespace {

using json = nlohmann::ordered_json;

json recordedDictionary(const PropertyValue::Dictionary& dictionary);
json recordedValue(const PropertyValue& value);

json recordedArray(const PropertyValue::Array& array) {
    json elements = json::array();
    for (const PropertyValue& element : array)
        if (json recorded = recordedValue(element); !recorded.is_null())
            elements.push_back(std::move(recorded));
    return elements;
}

/// null for what has no form.
json recordedValue(const PropertyValue& value) {
    const auto record = [](const auto& held) -> json {
        using Kind = std::remove_cvref_t<decltype(held)>;
        if constexpr (std::is_same_v<Kind, std::monostate>)
            return nullptr;
        else if constexpr (std::is_floating_point_v<Kind>)
            return std::isfinite(held) ? json(held) : json();
        else if constexpr (std::is_same_v<Kind, PropertyValue::Date>)
            return held.seconds;
        else if constexpr (std::is_same_v<Kind, PropertyValue::Data>)
            return {{"data", base64FromData(held)}};
        else if constexpr (std::is_same_v<Kind, PropertyValue::Array>)
            return recordedArray(held);
        else if constexpr (std::is_same_v<Kind, PropertyValue::Dictionary>)
            return held.size() == 1 && held.contains("data") ? json() : recordedDictionary(held);
        else
            return held;
    };
    return std::visit(record, value.storage());
}

json recordedDictionary(const PropertyValue::Dictionary& dictionary) {
    json object = json::object();
    for (const auto& [key, value] : dictionary)
        if (json recorded = recordedValue(value); !recorded.is_null())
            object[key] = std::move(recorded);
    return object;
}

json recordedEntry(RegistryEntry& entry) {
    json node = {
        {"id", entry.entryID()}, {"class", entry.className()}, {"name", entry.name().value_or("")}};
    if (const auto* const properties = entry.properties())
        node["properties"] = recordedDictionary(*properties);
    json children = json::array();
    for (const RegistryObject& child : entry.children())
        children.push_back(recordedEntry(*child));
    node["children"] = std::move(children);
    return node;
}

json sides(const Size& size) { return {size.width, size.height}; }

}  // namespace

json recordedRegistry(Registry& registry) { return recordedEntry(*registry.root()); }

json recordedScreens(Displays& displays, Registry& registry) {
    json all = json::array();
    for (const Screen& screen : displays.screens()) {
        const RegistryObject display =
            screen.location ? registry.objectAtPath(*screen.location) : nullptr;
        if (!display)
            continue;
        json names = json::object();
        for (const auto& [language, name] : screen.productNames)
            names[language] = name;
        json recorded = {{"number", screen.number},
                         {"registry", display->entryID()},
                         {"names", std::move(names)}};
        if (screen.resolution)
            recorded["resolution"] = sides(*screen.resolution);
        if (screen.size)
            recorded["size"] = sides(*screen.size);
        all.push_back(std::move(recorded));
    }
    return all;
}

json recordedGraphicsControl(GraphicsControl& control) {
    if (!control.open())
        return nullptr;
    const auto active = control.activeGPU();
    return active ? json(*active) : json("fail");
}

}  // namespace vantor
