#include "Shared/External/SQLite/SQLNames.h"

namespace vantor::inline VANTOR_MODULE {

std::string lowerCased(std::string_view text) {
    std::string lower(text);
    for (char& character : lower)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    return lower;
}

std::string quotesDoubled(std::string_view text) {
    std::string doubled;
    for (const char character : text)
        doubled.append(character == '\'' ? 2 : 1, character);
    return doubled;
}

}  // namespace vantor::inline VANTOR_MODULE
