#include "Shared/External/Logging/LGLogFileName.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include <fmt/format.h>

#include "Foundation/CivilTime.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kExtension = ".log";
constexpr std::string_view kDatePattern = "0000-00-00 00-00";  // 0 stands for any digit

bool isDigit(char letter) noexcept { return letter >= '0' && letter <= '9'; }

template <class Number>
Number numberOf(std::string_view digits) noexcept {
    Number number{};
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

std::optional<std::int64_t> timeOfDate(std::string_view text) {
    const bool fits = std::ranges::equal(text, kDatePattern, [](char letter, char pattern) {
        return pattern == '0' ? isDigit(letter) : letter == pattern;
    });
    if (!fits)
        return std::nullopt;
    return secondsOf({.year = numberOf<int>(text.substr(0, 4)),
                      .month = numberOf<unsigned>(text.substr(5, 2)),
                      .day = numberOf<unsigned>(text.substr(8, 2)),
                      .hour = numberOf<unsigned>(text.substr(11, 2)),
                      .minute = numberOf<unsigned>(text.substr(14, 2))});
}

std::vector<std::string_view> splitOnBlanks(std::string_view text) {
    std::vector<std::string_view> pieces;
    for (auto blank = text.find(' '); blank != text.npos; blank = text.find(' ')) {
        pieces.push_back(text.substr(0, blank));
        text.remove_prefix(blank + 1);
    }
    pieces.push_back(text);
    return pieces;
}

}  // namespace

std::string logFileDate(double time) {
    const CivilTime at = civilTime(time);
    return fmt::format("{:04}-{:02}-{:02} {:02}-{:02}", at.year, at.month, at.day, at.hour,
                       at.minute);
}

std::string textOf(const LGLogFileName& name, std::string_view applicationName) {
    const std::string counter = name.attempt > 1 ? fmt::format(" {}", name.attempt) : "";
    return fmt::format("{} {}{}{}", applicationName, logFileDate(static_cast<double>(name.time)),
                       counter, kExtension);
}

std::optional<LGLogFileName> logFileName(std::string_view text, std::string_view applicationName) {
    constexpr std::size_t kShortestMiddle = 1 + kDatePattern.size();
    if (!text.starts_with(applicationName) || !text.ends_with(kExtension) ||
        text.size() < applicationName.size() + kShortestMiddle + kExtension.size())
        return std::nullopt;
    text.remove_prefix(applicationName.size());
    text.remove_suffix(kExtension.size());
    const auto pieces = splitOnBlanks(text);
    if (pieces.size() != 3 && pieces.size() != 4)
        return std::nullopt;
    const auto time = timeOfDate(fmt::format("{} {}", pieces[1], pieces[2]));
    if (!time)
        return std::nullopt;
    const auto attempt = pieces.size() == 4 ? numberOf<std::uint64_t>(pieces[3]) : 1;
    return LGLogFileName{*time, attempt};
}

}  // namespace vantor::inline VANTOR_MODULE
