#pragma once

#include "Foundation/Colour.h"

namespace vantor::inline VANTOR_MODULE {

// What recurs among the history graphs.

inline constexpr Colour kBlueFill{0.054, 0.38, 0.537, 1}, kBlueStroke{0.168, 0.729, 0.988, 1};
inline constexpr Colour kRedFill{0.545, 0.054, 0.054, 1}, kRedStroke{1, 0.164, 0.164, 1};

}  // namespace vantor::inline VANTOR_MODULE
