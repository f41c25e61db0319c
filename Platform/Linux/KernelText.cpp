#include "Platform/Linux/KernelText.h"

#include <algorithm>
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

std::string_view trimmedText(std::string_view text) noexcept {
    constexpr std::string_view kBlanks{" \t\r\n\v\f\0", 7};
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::optional<std::string_view> valueOfLine(std::string_view text, std::string_view key) noexcept {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto colon = line.find(':');
        if (colon != line.npos && trimmedText(line.substr(0, colon)) == key)
            return trimmedText(line.substr(colon + 1));
    }
    return std::nullopt;
}

}  // namespace vantor
