#pragma once

#include <string>
#include <string_view>

namespace vantor {

/// A moment in the letters of a date pattern, such as "EEEE d MMM, h:mm a", in the words of a
/// locale such as "de_AT". `localSeconds` is what the clocks around the user show, as seconds since
/// 1970.
/// Shape:  the library that knows the words is opened by the first date, as most runs show none.
/// Errors: "" where it isn't installed, or refuses the pattern.
/// Thread: one at a time.
std::string dateInPattern(double localSeconds, std::string_view pattern, const std::string& locale);

}  // namespace vantor
