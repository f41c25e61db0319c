#pragma once

#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor {

inline constexpr std::string_view kExtrasDomain = "com.kolbrin.vantorbar5.extras";

/// Port: the stored settings, a keyed store of property-list values shared by processes.
/// Main queue only.
class PreferenceDomain {
public:
    virtual ~PreferenceDomain() = default;
    /// The value that stands there now, whoever wrote it, or nothing.
    virtual PropertyValue read(std::string_view key) = 0;
    /// Nothing removes the key. Throws std::runtime_error, with the reason, where the value
    /// can't be stored; what was stored before then stands.
    virtual void write(std::string_view key, const PropertyValue& value) = 0;
    /// Returns when earlier writes are where they outlive a power cut and others see them.
    virtual void synchronise() = 0;
    /// All that is stored.
    virtual PropertyValue::Dictionary readAll() = 0;
};

}  // namespace vantor
