#pragma once

#include <string>
#include <string_view>

namespace vantor {

/// The text in capitals, as headings have it: Latin, Greek and Cyrillic letters with their accents;
/// "ß" becomes "SS". All else stays, what isn't UTF-8 too. The locale has no part in it.
/// Thread: any.
std::string upperCased(std::string_view text);

}  // namespace vantor
