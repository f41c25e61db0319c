#include "Platform/Linux/ProcStat.h"

#include <charconv>
#include <cstddef>
#include <iterator>
#include <limits>
#include <system_error>

namespace vantor {
namespace {

using Field = std::uint64_t ProcessorFigures::*;

constexpr Field kFields[] = {&ProcessorFigures::user,    &ProcessorFigures::nice,
                             &ProcessorFigures::system,  &ProcessorFigures::idle,
                             &ProcessorFigures::iowait,  &ProcessorFigures::irq,
                             &ProcessorFigures::softirq, &ProcessorFigures::steal,
                             &ProcessorFigures::guest,   &ProcessorFigures::guestNice};
constexpr std::size_t kOldestFields = 4;

/// Takes the first line off `rest`, without its line feed. An unfinished one is dropped.
std::optional<std::string_view> takeLine(std::string_view& rest) noexcept {
    const std::size_t length = rest.find('\n');
    if (length == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(length + 1);
    return line;
}

/// Takes `word` off the front of `line`, if it's there.
bool takeWord(std::string_view& line, std::string_view word) noexcept {
    const bool there = line.starts_with(word);
    if (there)
        line.remove_prefix(word.size());
    return there;
}

void takeBlanks(std::string_view& line) noexcept {
    while (!line.empty() && line.front() == ' ')
        line.remove_prefix(1);
}

/// Takes a number off the front of `line`, up to a blank or the end.
std::optional<std::uint64_t> takeNumber(std::string_view& line) noexcept {
    const char* const end = line.data() + line.size();
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(line.data(), end, number);
    if (error == std::errc::invalid_argument || (stop != end && *stop != ' '))
        return std::nullopt;
    line.remove_prefix(static_cast<std::size_t>(stop - line.data()));
    const bool fits = error != std::errc::result_out_of_range;
    return fits ? number : std::numeric_limits<std::uint64_t>::max();
}

/// The line of all CPUs together, "cpu", has no number and is none.
bool readProcessor(std::string_view line, ProcessorFigures& into) noexcept {
    if (!takeWord(line, "cpu"))
        return false;
    const auto cpu = takeNumber(line);
    if (!cpu || *cpu >= kMaximumCPUs)
        return false;
    ProcessorFigures figures{.cpu = static_cast<std::uint32_t>(*cpu)};
    std::size_t count = 0;
    for (takeBlanks(line); count < std::size(kFields) && !line.empty(); takeBlanks(line)) {
        const auto number = takeNumber(line);
        if (!number)
            return false;
        figures.*kFields[count++] = *number;
    }
    if (count >= kOldestFields)
        into = figures;
    return count >= kOldestFields;
}

}  // namespace

bool ProcStatReader::next(ProcessorFigures& into) noexcept {
    while (const auto line = takeLine(rest_))
        if (readProcessor(*line, into))
            return true;
    return false;
}

std::optional<std::int64_t> bootSecondsIn(std::string_view procStat) noexcept {
    while (auto line = takeLine(procStat)) {
        if (!takeWord(*line, "btime "))
            continue;
        takeBlanks(*line);
        const auto seconds = takeNumber(*line);
        const bool fits = seconds && *seconds <= std::numeric_limits<std::int64_t>::max();
        return fits ? std::optional(static_cast<std::int64_t>(*seconds)) : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace vantor
