#include "Platform/Linux/LinuxRegionalSettings.h"

#include <memory>
#include <type_traits>

#include <langinfo.h>
#include <locale.h>

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

}  // namespace

LinuxRegionalSettings::LinuxRegionalSettings(const char* localeName)
    : metric_(isMetric(localeName)), shortTimeFormat_(shortTimeFormatFor(timeFormat(localeName))) {}

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

}  // namespace vantor
