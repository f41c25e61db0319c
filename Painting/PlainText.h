#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vantor::Painting {

/// A text as it can be laid out on one line, whatever its owner wrote: at most kMostCharacters,
/// valid UTF-8, blanks in place of control characters and U+FFFD in place of what isn't UTF-8.
/// Nothing is copied of a text that is so already. The given text outlives it.
class PlainText {
public:
    static constexpr std::size_t kMostCharacters = 1024;

    explicit PlainText(std::string_view text) noexcept;
    PlainText(const PlainText&) = delete;
    PlainText& operator=(const PlainText&) = delete;

    std::string_view view() const noexcept { return view_; }

private:
    void copy(std::string_view text) noexcept;

    std::string_view view_;
    std::array<char, kMostCharacters * 4> copy_;  // written only where a copy is needed
};

}  // namespace vantor::Painting
