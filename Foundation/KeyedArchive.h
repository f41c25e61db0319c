#pragma once

#include <string_view>
#include <variant>

#include "Foundation/Colour.h"

namespace vantor {

// Objects that an application wrote to its settings as keyed archives: property lists, XML or
// binary, of numbered objects that refer to each other. Colours are the only ones of interest.
// Independent of the C locale.
// Thread: any.

struct NotAnArchive {
    bool operator==(const NotAnArchive&) const = default;
};
struct AnotherObject {
    bool operator==(const AnotherObject&) const = default;
};
using ArchivedObject = std::variant<NotAnArchive, AnotherObject, Colour>;

/// The root object of the archive in `bytes`. A colour's components are taken as they stand,
/// cut to 0 to 1, whichever space they are of: grey and ink become red, green and blue, and a
/// colour from a list is the one that was archived with its name. A colour of any other make,
/// such as a pattern, is another object, as is one that is damaged.
ArchivedObject objectInKeyedArchive(std::string_view bytes);

}  // namespace vantor
