#include "Programs/vantorbar/TerminalHere.h"

#include <langinfo.h>
#include <locale.h>

#include "Platform/Linux/Environment.h"

namespace vantor {
namespace {

/// The codeset of the user's locale, "" where that isn't installed. The process's own locale
/// stays as it is.
std::string userCodeset() {
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr)
        return {};
    const std::string codeset = nl_langinfo_l(CODESET, locale);
    freelocale(locale);
    return codeset;
}

}  // namespace

TerminalHere terminalHere() {
    const Environment environment = processEnvironment();
    const auto value = [&](const char* name) { return environment(name).value_or(""); };
    return {value("TERM"), value("COLORTERM"), value("NO_COLOR"), userCodeset()};
}

}  // namespace vantor
