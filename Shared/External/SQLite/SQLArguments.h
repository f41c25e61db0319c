#pragma once

#include <concepts>
#include <span>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

/// Values that a caller wrote one after the other.
struct SQLArgumentList {
    std::span<const PropertyValue> values;
};

/// The values of one execution. A dictionary is used alone; without one, those of `array` come
/// first, then those of `list`.
struct SQLArguments {
    std::span<const PropertyValue> array;
    const PropertyValue::Dictionary* dictionary = nullptr;
    std::span<const PropertyValue> list;
};

/// What may stand as one value behind a query's text; an array of values is no such value.
template <class Value>
concept SQLArgument = std::convertible_to<const Value&, PropertyValue> &&
    !std::convertible_to<const Value&, std::span<const PropertyValue>>;

}  // namespace vantor::inline VANTOR_MODULE
