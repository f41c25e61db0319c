#include "Programs/vantorbar/ZoneFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

namespace vantor {
namespace {

/// No zone's name leads out of the folder: none has a dot.
bool isZoneName(std::string_view name) {
    return !name.empty() && name.front() != '/' && std::ranges::all_of(name, [](char letter) {
        const bool isLetter = (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
        return isLetter || (letter >= '0' && letter <= '9') ||
               std::string_view("_+-/").find(letter) != std::string_view::npos;
    });
}

}  // namespace

std::optional<TimeZoneRules> timeZoneNamed(std::string_view name,
                                           const std::filesystem::path& folder) {
    if (name == "UTC")
        return TimeZoneRules{};
    std::error_code unreadable;  // as good as missing
    const std::filesystem::path file = folder / name;
    if (!isZoneName(name) || !std::filesystem::is_regular_file(file, unreadable))
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    return TimeZoneRules::fromZoneFile(bytes);
}

}  // namespace vantor
