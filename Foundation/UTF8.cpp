#include "Foundation/UTF8.h"

namespace vantor {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// What the second byte may be after some leads; the others take any continuation. It keeps out
/// overlong forms, surrogates and what lies beyond the last letter.
bool isSecondByteAllowed(unsigned lead, unsigned second) noexcept {
    switch (lead) {
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

}  // namespace

std::size_t utf8LetterLength(std::string_view bytes) noexcept {
    const auto byte = [bytes](std::size_t at) -> unsigned {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return bytes.empty() ? 0 : 1;
    if (lead < 0xC2 || lead > 0xF4 || !isSecondByteAllowed(lead, byte(1)))
        return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    for (std::size_t at = 1; at < length; ++at)
        if ((byte(at) & 0xC0) != 0x80)
            return 0;
    return length;
}

std::string_view validUTF8Prefix(std::string_view bytes) noexcept {
    std::size_t valid = 0;
    while (const std::size_t length = utf8LetterLength(bytes.substr(valid)))
        valid += length;
    return bytes.substr(0, valid);
}

void appendUTF8(char32_t letter, std::string& to) {
    if (letter > 0x10FFFF || (letter >= 0xD800 && letter < 0xE000))
        letter = kReplacement;
    const auto append = [&to](char32_t byte) { to += static_cast<char>(byte); };
    const auto continuation = [&](int shift) { append(0x80 | (letter >> shift & 0x3F)); };
    if (letter < 0x80)
        return append(letter);
    if (letter < 0x800) {
        append(0xC0 | letter >> 6);
        return continuation(0);
    }
    if (letter < 0x10000) {
        append(0xE0 | letter >> 12);
    } else {
        append(0xF0 | letter >> 18);
        continuation(12);
    }
    continuation(6);
    continuation(0);
}

}  // namespace vantor
