#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vantor {

// Numbers in texts, never by the C locale: hosts switch it under us.

/// The integer at the start of `text`, behind blanks and a sign; what follows it is ignored.
/// 0 where there is none; the ends of the range where it doesn't fit.
std::int64_t leadingInteger(std::string_view text) noexcept;

/// The number at the start of `text`, behind blanks; 0 where there is none.
double leadingNumber(std::string_view text) noexcept;

/// All of `text` as one integer or one finite number, or nothing.
std::optional<std::int64_t> wholeInteger(std::string_view text) noexcept;
std::optional<double> wholeNumber(std::string_view text) noexcept;

}  // namespace vantor
