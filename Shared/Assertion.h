#pragma once

#include <source_location>
#include <string_view>

namespace vantor {
class SystemLog;
}

namespace vantor::inline VANTOR_MODULE {

/// Ends the process for a mistake of the program's own: the system log gets one line with `words`
/// and the place, then the process aborts.
/// Thread: any.
[[noreturn]] void failAssertion(SystemLog& systemLog, std::string_view words,
                                std::source_location place = std::source_location::current());

}  // namespace vantor::inline VANTOR_MODULE
