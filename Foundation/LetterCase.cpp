#include "Foundation/LetterCase.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "Foundation/UTF8.h"

namespace vantor {
namespace {

constexpr char32_t kSharpS = 0xDF;

/// Small letters from `first` to `last`, each `step` letters after the one before.
struct SmallLetters {
    char32_t first, last, step;
    std::int32_t toCapital;
};

constexpr std::array kSmallLetters{
    SmallLetters{'a', 'z', 1, -32},
    SmallLetters{0xB5, 0xB5, 1, 0x39C - 0xB5},  // micro becomes My
    SmallLetters{0xE0, 0xF6, 1, -32},
    SmallLetters{0xF8, 0xFE, 1, -32},
    SmallLetters{0xFF, 0xFF, 1, 0x178 - 0xFF},
    SmallLetters{0x101, 0x12F, 2, -1},
    SmallLetters{0x131, 0x131, 1, 'I' - 0x131},
    SmallLetters{0x133, 0x137, 2, -1},
    SmallLetters{0x13A, 0x148, 2, -1},
    SmallLetters{0x14B, 0x177, 2, -1},
    SmallLetters{0x17A, 0x17E, 2, -1},
    SmallLetters{0x3AC, 0x3AC, 1, 0x386 - 0x3AC},
    SmallLetters{0x3AD, 0x3AF, 1, 0x388 - 0x3AD},
    SmallLetters{0x3B1, 0x3C1, 1, -32},
    SmallLetters{0x3C2, 0x3C2, 1, 0x3A3 - 0x3C2},  // the Sigma that ends a word
    SmallLetters{0x3C3, 0x3CB, 1, -32},
    SmallLetters{0x3CC, 0x3CC, 1, 0x38C - 0x3CC},
    SmallLetters{0x3CD, 0x3CE, 1, 0x38E - 0x3CD},
    SmallLetters{0x430, 0x44F, 1, -32},
    SmallLetters{0x450, 0x45F, 1, -80},
    SmallLetters{0x1E01, 0x1E95, 2, -1},
    SmallLetters{0x1EA1, 0x1EFF, 2, -1},
};

/// `bytes` is one whole letter.
char32_t decoded(std::string_view bytes) noexcept {
    constexpr std::array<unsigned, 5> kLeadBits{0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t letter = static_cast<unsigned char>(bytes.front()) & kLeadBits[bytes.size()];
    for (const char byte : bytes.substr(1))
        letter = letter << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
    return letter;
}

char32_t capital(char32_t letter) noexcept {
    const auto found = std::ranges::find_if(kSmallLetters, [letter](const SmallLetters& letters) {
        return letter >= letters.first && letter <= letters.last &&
               (letter - letters.first) % letters.step == 0;
    });
    return found == kSmallLetters.end()
               ? letter
               : static_cast<char32_t>(static_cast<std::int32_t>(letter) + found->toCapital);
}

}  // namespace

std::string upperCased(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = utf8LetterLength(text);
        const std::string_view bytes = text.substr(0, std::max(length, std::size_t{1}));
        text.remove_prefix(bytes.size());
        if (length == 0)
            result += bytes;
        else if (const char32_t letter = decoded(bytes); letter == kSharpS)
            result += "SS";
        else
            appendUTF8(capital(letter), result);
    }
    return result;
}

}  // namespace vantor
