#include "Programs/vantorbar-preferences/Model/Mnemonics.h"

#include <cstddef>
#include <optional>

namespace vantor {
namespace {

/// The letter in lower case; nothing where there is none, and for one that is part of a letter
/// beyond ASCII.
std::optional<char> letterOf(char byte) noexcept {
    if (byte >= 'A' && byte <= 'Z')
        return static_cast<char>(byte - 'A' + 'a');
    if (byte >= 'a' && byte <= 'z')
        return byte;
    return std::nullopt;
}

bool beginsWord(std::string_view label, std::size_t place) noexcept {
    return place == 0 || label[place - 1] == ' ';
}

std::string marked(std::string_view label, std::size_t at) {
    std::string text;
    for (std::size_t place = 0; place < label.size(); ++place) {
        if (place == at)
            text += '_';
        text += label[place];
        if (label[place] == '_')
            text += '_';
    }
    return text;
}

}  // namespace

std::string Mnemonics::mark(std::string_view label) {
    bool hasLetters = false;
    for (const bool onlyFirst : {true, false})
        for (std::size_t place = 0; place < label.size(); ++place) {
            const auto letter = letterOf(label[place]);
            hasLetters = hasLetters || letter;
            if (letter && (!onlyFirst || beginsWord(label, place)) && taken_.insert(*letter).second)
                return marked(label, place);
        }
    for (char letter = 'a'; letter <= 'z' && !hasLetters; ++letter)
        if (taken_.insert(letter).second)
            return marked(label, label.npos) + "(_" + static_cast<char>(letter - 'a' + 'A') + ")";
    return marked(label, label.npos);
}

}  // namespace vantor
