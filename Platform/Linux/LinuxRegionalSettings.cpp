#include "Platform/Linux/LinuxRegionalSettings.h"

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>

#include <langinfo.h>
#include <locale.h>

#include "Platform/Linux/DatePattern.h"

namespace vantor {
namespace {

struct LocaleCloser {
    void operator()(locale_t locale) const noexcept { ::freelocale(locale); }
};
using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, LocaleCloser>;

/// Only the category that is asked for, because a locale can lack others.
Locale openLocale(int categoryMask, const char* name) noexcept {
    const locale_t named = ::newlocale(categoryMask, name, nullptr);
    return Locale(named != nullptr ? named : ::newlocale(categoryMask, "C", nullptr));
}

/// 1 is the metric system, 2 that of the United States.
bool isMetric(const char* localeName) noexcept {
    const Locale locale = openLocale(LC_MEASUREMENT_MASK, localeName);
    return !locale || *::nl_langinfo_l(_NL_MEASUREMENT_MEASUREMENT, locale.get()) != 2;
}

std::string timeFormat(const char* localeName) {
    const Locale locale = openLocale(LC_TIME_MASK, localeName);
    return locale ? ::nl_langinfo_l(T_FMT, locale.get()) : "%T";
}

std::string messageLocale(const Environment& environment) {
    for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (auto locale = nonEmpty(environment, name))
            return *std::move(locale);
    return "C";
}

bool isPlain(std::string_view locale) noexcept { return locale == "C" || locale == "POSIX"; }

std::string_view withoutCodeset(std::string_view locale) noexcept {
    return locale.substr(0, locale.find_first_of(".@"));
}

/// Whose words dates are in; English where nothing is said.
std::string timeLocaleIn(const Environment& environment, std::string_view localeName) {
    if (!localeName.empty())
        return std::string(withoutCodeset(localeName));
    for (const char* const name : {"LC_ALL", "LC_TIME", "LANG"})
        if (const auto locale = nonEmpty(environment, name); locale && !isPlain(*locale))
            return std::string(withoutCodeset(*locale));
    return "en_US";
}

}  // namespace

LinuxRegionalSettings::LinuxRegionalSettings(const char* localeName, const Environment& environment)
    : metric_(isMetric(localeName)), shortTimeFormat_(shortTimeFormatFor(timeFormat(localeName))),
      preferredLanguages_(preferredLanguagesIn(environment)),
      timeLocale_(timeLocaleIn(environment, localeName)) {}

std::string LinuxRegionalSettings::dateText(double localSeconds, std::string_view pattern,
                                            const std::optional<std::string>& locale) const {
    return dateInPattern(localSeconds, pattern, locale.value_or(timeLocale_));
}

std::string shortTimeFormatFor(std::string_view strftimeFormat) {
    constexpr std::string_view kModifiers = "-_0^#EO";
    std::string_view rest = strftimeFormat;
    for (auto at = rest.find('%'); at != rest.npos; at = rest.find('%')) {
        rest.remove_prefix(at + 1);
        bool padded = true;
        for (; !rest.empty() && kModifiers.find(rest.front()) != rest.npos; rest.remove_prefix(1))
            padded = padded && rest.front() != '-' && rest.front() != '_';
        const char conversion = rest.empty() ? '\0' : rest.front();
        if (conversion == 'I' || conversion == 'l' || conversion == 'r')
            return "h:mm a";
        if (conversion == 'k' || (conversion == 'H' && !padded))
            return "H:mm";
        if (conversion == 'H' || conversion == 'T' || conversion == 'R')
            return "HH:mm";
        rest.remove_prefix(rest.empty() ? 0 : 1);
    }
    return "HH:mm";
}

std::vector<std::string> preferredLanguagesIn(const Environment& environment) {
    const std::string locale = messageLocale(environment);
    if (isPlain(locale))
        return {};
    const std::string list = nonEmpty(environment, "LANGUAGE").value_or(locale);
    std::vector<std::string> languages;
    for (std::string_view rest = list; !rest.empty();) {
        const std::string_view language = withoutCodeset(rest.substr(0, rest.find(':')));
        if (isPlain(language))
            break;
        if (!language.empty())
            languages.emplace_back(language);
        rest.remove_prefix(std::min(rest.find(':'), rest.size() - 1) + 1);
    }
    return languages;
}

}  // namespace vantor
