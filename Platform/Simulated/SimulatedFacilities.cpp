#include "Platform/Simulated/SimulatedFacilities.h"

#include <algorithm>
#include <string_view>

namespace vantor::simulated {
namespace {

/// "US" of "en_US", "TW" of "zh-Hant-TW"; "" where the tag names no region.
std::string_view regionOf(std::string_view tag) noexcept {
    tag = tag.substr(0, tag.find_first_of(".@"));
    const auto mark = tag.find_last_of("_-");
    const std::string_view region = mark == tag.npos ? std::string_view{} : tag.substr(mark + 1);
    return region.size() == 2 ? region : std::string_view{};
}

std::string_view languageOf(std::string_view tag) noexcept {
    return tag.substr(0, tag.find_first_of("_-.@"));
}

template <std::size_t Count>
bool isAmong(std::string_view text, const std::string_view (&texts)[Count]) noexcept {
    return std::ranges::find(texts, text) != std::end(texts);
}

// After the Unicode locale data, release 42: measurement systems, and the regions and languages
// whose short time isn't "HH:mm".
constexpr std::string_view kImperialRegions[] = {"US", "LR", "MM"};
constexpr std::string_view kTwelveHourRegions[] = {"US", "CA", "AU", "NZ", "IN", "PH", "PK", "BD",
                                                   "EG", "SA", "MX", "CO", "KR", "MY", "SG", "HK"};
constexpr std::string_view kBareHourLanguages[] = {"ja", "es", "cs", "bg", "sk", "sl", "fi"};

}  // namespace

bool SimulatedRegionalSettings::usesMetricSystem() const {
    const std::string_view region = regionOf(tag_);
    return !isAmong(region.empty() && tag_ == "en" ? "US" : region, kImperialRegions);
}

std::string SimulatedRegionalSettings::shortTimeFormat() const {
    const std::string_view region = regionOf(tag_);
    if (isAmong(region, kTwelveHourRegions) || tag_ == "en")
        return "h:mm a";
    return isAmong(languageOf(tag_), kBareHourLanguages) ? "H:mm" : "HH:mm";
}

}  // namespace vantor::simulated
