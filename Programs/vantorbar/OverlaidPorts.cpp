#include "Programs/vantorbar/OverlaidPorts.h"

#include <string>

namespace vantor {

PropertyValue OverlaidPreferences::read(std::string_view key) {
    const auto own = own_.find(key);
    return own != own_.end() ? own->second : below_.read(key);
}

void OverlaidPreferences::write(std::string_view key, const PropertyValue& value) {
    own_.insert_or_assign(std::string(key), value);
}

PropertyValue::Dictionary OverlaidPreferences::readAll() {
    PropertyValue::Dictionary all = below_.readAll();
    for (const auto& [key, value] : own_)
        if (value.isNothing())
            all.erase(key);
        else
            all.insert_or_assign(key, value);
    return all;
}

}  // namespace vantor
