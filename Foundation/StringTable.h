#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vantor {

/// Texts for the user, by key.
using StringTable = std::map<std::string, std::string, std::less<>>;

/// The table in the bytes of a ".strings" file:
///
///     /* a comment */
///     "key" = "text";  // another
///
/// In UTF-8, with or without a byte order mark. Inside quotes \n, \t and \r are control characters,
/// \U and \u with up to four hexadecimal digits a UTF-16 unit, and any other letter behind a
/// backslash itself. Of a key that stands twice, the later text holds.
/// Errors: reading ends at the first damage, be it of the form or of the UTF-8, and what was whole
/// before it stays: half a table shows the user more of their language than none.
/// Thread: any.
StringTable stringTable(std::string_view bytes);

}  // namespace vantor
