#pragma once

#include <string>
#include <string_view>

namespace vantor::inline VANTOR_MODULE {

/// With the letters from A to Z made small, as SQLite compares names.
std::string lowerCased(std::string_view text);

/// With every single quote doubled, so that it can stand between two of them.
std::string quotesDoubled(std::string_view text);

}  // namespace vantor::inline VANTOR_MODULE
