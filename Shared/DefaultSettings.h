#pragma once

#include <optional>
#include <string>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

/// What a few defaults depend on.
struct DefaultsEnvironment {
    bool isLaptop = false;
    bool usesMetricSystem = true;
    std::string shortTimeFormat = {};  // in date pattern letters
    double now = 0;                    // seconds since 1970
    std::optional<std::string> uuid = {};
};

/// The value of every setting that has one before anybody stores another, for the whole suite:
/// the store is shared with the sibling modules. Colours are texts, as the store has them.
PropertyValue::Dictionary defaultSettings(const DefaultsEnvironment& environment);

}  // namespace vantor::inline VANTOR_MODULE
