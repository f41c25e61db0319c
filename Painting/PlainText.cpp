#include "Painting/PlainText.h"

#include <algorithm>
#include <cstdint>

namespace vantor::Painting {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

unsigned byteAt(std::string_view text, std::size_t index) noexcept {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0u;
}

/// Bytes of the character that begins with `first`, by the first alone; 0 where none does.
std::size_t announcedLength(unsigned first) noexcept {
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

/// Whether the second byte keeps the character from being too long a form, a surrogate, or
/// beyond U+10FFFF.
bool secondFits(unsigned first, unsigned second) noexcept {
    switch (first) {
    case 0xE0:
        return second >= 0xA0;
    case 0xED:
        return second < 0xA0;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second < 0x90;
    default:
        return true;
    }
}

/// Bytes of the character at the text's start; 0 where there is no whole one.
std::size_t characterLength(std::string_view text) noexcept {
    const unsigned first = byteAt(text, 0);
    const std::size_t length = announcedLength(first);
    for (std::size_t index = 1; index < length; ++index)
        if ((byteAt(text, index) & 0xC0) != 0x80)
            return 0;
    return length < 2 || secondFits(first, byteAt(text, 1)) ? length : 0;
}

bool isControl(std::string_view character) noexcept {
    const unsigned first = byteAt(character, 0);
    return first < 0x20 || first == 0x7F || (first == 0xC2 && byteAt(character, 1) < 0xA0) ||
           character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";  // line, paragraph separator
}

/// The next character as it will stand; `text` loses what it was made of.
std::string_view takeCharacter(std::string_view& text) noexcept {
    const std::size_t length = characterLength(text);
    const std::string_view character = text.substr(0, std::max(length, std::size_t{1}));
    text.remove_prefix(character.size());
    if (length == 0)
        return kReplacement;
    return isControl(character) ? std::string_view(" ") : character;
}

}  // namespace

PlainText::PlainText(std::string_view text) noexcept : view_(text) {
    std::string_view rest = text;
    for (std::size_t count = 0; !rest.empty(); ++count) {
        const char* const from = rest.data();
        if (count == kMostCharacters) {
            view_ = text.substr(0, text.size() - rest.size());
            return;
        }
        if (takeCharacter(rest).data() != from) {
            copy(text);
            return;
        }
    }
}

void PlainText::copy(std::string_view text) noexcept {
    std::size_t length = 0;
    for (std::size_t count = 0; count < kMostCharacters && !text.empty(); ++count) {
        const std::string_view character = takeCharacter(text);
        std::ranges::copy(character, copy_.begin() + static_cast<std::ptrdiff_t>(length));
        length += character.size();
    }
    view_ = {copy_.data(), length};
}

}  // namespace vantor::Painting
