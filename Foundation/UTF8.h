#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantor {

// Text as UTF-8, for files that claim to be it. Thread: any.

/// The bytes of the letter that `bytes` begins with; 0 where they begin with none, or with a part
/// of one.
std::size_t utf8LetterLength(std::string_view bytes) noexcept;

/// The longest beginning of `bytes` that is UTF-8: without overlong forms, surrogates, or a letter
/// that ends early.
std::string_view validUTF8Prefix(std::string_view bytes) noexcept;

/// U+FFFD stands in for what is no letter: a surrogate, or anything beyond U+10FFFF.
void appendUTF8(char32_t letter, std::string& to);

}  // namespace vantor
