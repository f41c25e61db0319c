#include "Painting/PlainText.h"

#include <algorithm>

#include "Foundation/UTF8.h"

namespace vantor::Painting {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

unsigned byteAt(std::string_view text, std::size_t index) noexcept {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0u;
}

bool isControl(std::string_view character) noexcept {
    const unsigned first = byteAt(character, 0);
    return first < 0x20 || first == 0x7F || (first == 0xC2 && byteAt(character, 1) < 0xA0) ||
           character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";  // line, paragraph separator
}

/// The next character as it will stand; `text` loses what it was made of.
std::string_view takeCharacter(std::string_view& text) noexcept {
    const std::size_t length = utf8LetterLength(text);
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
