#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor::inline VANTOR_MODULE {

/// The name of a log file: "vantorbar 2015-03-09 14-05.log", and with the number of the attempt
/// " 2" before the extension where the minute had a file already. Times are in GMT.
/// Ordered by time, then by attempt.
struct LGLogFileName {
    std::int64_t time = 0;  // seconds since 1970, of a whole minute
    std::uint64_t attempt = 1;

    std::strong_ordering operator<=>(const LGLogFileName&) const = default;
};

/// "2015-03-09 14-05".
std::string logFileDate(double time);
std::string textOf(const LGLogFileName& name, std::string_view applicationName);

/// Nothing where `text` isn't the name of a log file of that application.
std::optional<LGLogFileName> logFileName(std::string_view text, std::string_view applicationName);

}  // namespace vantor::inline VANTOR_MODULE
