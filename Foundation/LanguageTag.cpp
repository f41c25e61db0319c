#include "Foundation/LanguageTag.h"

#include <algorithm>
#include <array>

namespace vantor {
namespace {

bool isLetter(char letter) noexcept {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}
bool isDigit(char letter) noexcept { return letter >= '0' && letter <= '9'; }
bool isAll(std::string_view text, bool (*kind)(char) noexcept) noexcept {
    return std::ranges::all_of(text, kind);
}

// By hand, because those of the C library go by its locale.
char small(char letter) noexcept {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
char capital(char letter) noexcept {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string mapped(std::string_view text, char (*change)(char) noexcept) {
    std::string changed(text);
    std::ranges::transform(changed, changed.begin(), change);
    return changed;
}

/// Takes the text before the first mark off `rest`, and the mark.
std::string_view takePart(std::string_view& rest) noexcept {
    const std::string_view part = rest.substr(0, rest.find_first_of("-_"));
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    return part;
}

std::string chineseScriptOf(std::string_view region) {
    constexpr std::array<std::string_view, 3> kTraditional{"TW", "HK", "MO"};
    return std::ranges::find(kTraditional, region) != kTraditional.end() ? "Hant" : "Hans";
}

/// 0 where the user couldn't read it.
int suitability(const LanguageTag& localization, const LanguageTag& preference) noexcept {
    if (localization.language != preference.language || localization.script != preference.script)
        return 0;
    if (localization.region == preference.region)
        return 3;
    return localization.region.empty() ? 2 : 1;
}

}  // namespace

LanguageTag languageTag(std::string_view text) {
    std::string_view rest = text.substr(0, text.find_first_of(".@"));
    const std::string_view language = takePart(rest);
    if (language.size() < 2 || language.size() > 3 || !isAll(language, isLetter))
        return {};
    LanguageTag tag{.language = mapped(language, small), .script = {}, .region = {}};
    while (!rest.empty()) {
        const std::string_view part = takePart(rest);
        const bool letters = isAll(part, isLetter);
        if (part.size() == 4 && letters)
            tag.script = capital(part[0]) + mapped(part.substr(1), small);
        else if ((part.size() == 2 && letters) || (part.size() == 3 && isAll(part, isDigit)))
            tag.region = mapped(part, capital);
    }
    if (tag.language == "zh" && tag.script.empty())
        tag.script = chineseScriptOf(tag.region);
    return tag;
}

std::optional<std::string> preferredLocalization(std::span<const std::string> localizations,
                                                 std::span<const std::string> preferences) {
    for (const std::string& preferred : preferences) {
        const LanguageTag preference = languageTag(preferred);
        if (preference.language.empty())
            continue;
        const auto suits = [&](const std::string& localization) {
            return suitability(languageTag(localization), preference);
        };
        const auto best = std::ranges::max_element(localizations, {}, suits);
        if (best != localizations.end() && suits(*best) > 0)
            return *best;
    }
    return std::nullopt;
}

}  // namespace vantor
