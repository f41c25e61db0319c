#pragma once

#include <string_view>

namespace vantor {

/// Whether the property list in `bytes` may be given to the library that takes it apart. That one
/// recurses by nesting, builds an object anew wherever a binary list refers to it, and asserts
/// that no text has a null inside: a few bytes could ask for any depth, any amount of memory, or
/// the end of the program.
/// What isn't a property list at all may pass; reading it says so.
/// Errors: none; false where the list is too large, or a binary one is damaged.
/// Thread: any.
bool propertyListIsWithinBounds(std::string_view bytes) noexcept;

}  // namespace vantor
