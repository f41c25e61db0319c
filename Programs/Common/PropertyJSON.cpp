#include "Programs/Common/PropertyJSON.h"

#include <cstddef>
#include <type_traits>
#include <variant>

namespace vantor {
namespace {

using json = nlohmann::ordered_json;

}  // namespace

json jsonOfValue(const PropertyValue& value) {
    return std::visit(
        [](const auto& held) -> json {
            using Kind = std::remove_cvref_t<decltype(held)>;
            if constexpr (std::is_same_v<Kind, std::monostate>) {
                return nullptr;
            } else if constexpr (std::is_same_v<Kind, PropertyValue::Array>) {
                json array = json::array();
                for (const PropertyValue& element : held)
                    array.push_back(jsonOfValue(element));
                return array;
            } else if constexpr (std::is_same_v<Kind, PropertyValue::Dictionary>) {
                json object = json::object();
                for (const auto& [key, element] : held)
                    object[key] = jsonOfValue(element);
                return object;
            } else if constexpr (std::is_same_v<Kind, PropertyValue::Date>) {
                return held.seconds;
            } else if constexpr (std::is_same_v<Kind, PropertyValue::Data>) {
                json bytes = json::array();
                for (const std::byte byte : held)
                    bytes.push_back(std::to_integer<int>(byte));
                return bytes;
            } else {
                return held;
            }
        },
        value.storage());
}

}  // namespace vantor
