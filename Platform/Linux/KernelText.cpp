#include "Platform/Linux/KernelText.h"

#include <fstream>

namespace vantor {

std::optional<std::string> trimmedTextOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::getline(file, text, '\0');  // all of it; unlike iterators, this throws no failed reading
    if (!file.is_open() || file.bad())
        return std::nullopt;
    constexpr const char* kBlanks = " \t\r\n\v\f";
    text.erase(text.find_last_not_of(kBlanks) + 1);
    text.erase(0, text.find_first_not_of(kBlanks));
    return text;
}

}  // namespace vantor
