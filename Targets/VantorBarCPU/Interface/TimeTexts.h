#pragma once

#include <string>

namespace vantor::inline VANTOR_MODULE {

/// A length of time in the user's words: days, hours and minutes, as many as it takes. Zero hours
/// stay behind days, and zero minutes always.
std::string formattedTime(double seconds);

}  // namespace vantor::inline VANTOR_MODULE
