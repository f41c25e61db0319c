#pragma once

#include <string>
#include <string_view>

#include <fmt/format.h>

namespace vantor::inline VANTOR_MODULE {

// Debugging aids, apart from the log: a line with a stamp, on standard output at once.

/// "2015-03-09 14:05:00.250: text"
void DLogText(std::string_view text);

template <class... Arguments>
void DLog(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    DLogText(fmt::format(format, std::forward<Arguments>(arguments)...));
}

/// The same, for statements.
template <class... Arguments>
void SQLLog(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    DLogText(fmt::format(format, std::forward<Arguments>(arguments)...));
}

}  // namespace vantor::inline VANTOR_MODULE
