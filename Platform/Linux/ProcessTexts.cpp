#include "Platform/Linux/ProcessTexts.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace vantor {
namespace {

constexpr std::uint64_t kKernelThreadFlag = 0x0020'0000;

/// Takes the word off the front of `line`, with the blank behind it.
std::string_view takeWord(std::string_view& line) noexcept {
    const std::size_t length = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, length);
    line.remove_prefix(std::min(length + 1, line.size()));
    return word;
}

/// All of `word` as a number.
template <class Number>
bool parse(std::string_view word, Number& into) noexcept {
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, into);
    if (error == std::errc::result_out_of_range && std::unsigned_integral<Number>)
        into = std::numeric_limits<Number>::max();
    else if (error != std::errc{})
        return false;
    return stop == end;
}

template <class Number>
bool take(std::string_view& line, Number& into) noexcept {
    return parse(takeWord(line), into);
}

void skip(std::string_view& line, int words) noexcept {
    for (; words > 0; --words)
        takeWord(line);
}

std::uint64_t sumOf(std::uint64_t one, std::uint64_t other) noexcept {
    const std::uint64_t sum = one + other;
    return sum < one ? std::numeric_limits<std::uint64_t>::max() : sum;
}

void setName(ProcessReading& process, std::string_view name) noexcept {
    process.nameSize = std::min(name.size(), process.nameBytes.size());
    std::copy_n(name.data(), process.nameSize, process.nameBytes.data());
}

/// What follows the name and its bracket: "S 1 1 ...".
bool readFigures(std::string_view line, ProcessReading& into) noexcept {
    std::uint64_t flags = 0, user = 0, system = 0;
    skip(line, 1);  // the state
    if (!take(line, into.parent))
        return false;
    skip(line, 1);  // the process group
    if (!take(line, into.session))
        return false;
    skip(line, 2);  // terminal and its foreground group
    if (!take(line, flags))
        return false;
    skip(line, 4);  // page faults
    if (!take(line, user) || !take(line, system))
        return false;
    skip(line, 6);  // times of children, priority, niceness, threads, an old timer
    if (!take(line, into.startTicks) || line.empty())
        return false;
    into.ticks = sumOf(user, system);
    into.isKernelThread = (flags & kKernelThreadFlag) != 0;
    return true;
}

std::string_view takeLine(std::string_view& text) noexcept {
    const std::size_t length = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return line;
}

/// Whether a unit holds more than one application: a login, a manager or the init.
bool isShared(std::string_view unit) noexcept {
    return unit == "init.scope" || (unit.starts_with("session-") && unit.ends_with(".scope")) ||
           (unit.starts_with("user@") && unit.ends_with(".service"));
}

std::string_view applicationInPath(std::string_view path) noexcept {
    while (!path.empty()) {
        const std::string_view unit = baseName(path);
        if (unit.ends_with(".scope") || unit.ends_with(".service"))
            return isShared(unit) ? std::string_view{} : path;
        path.remove_suffix(std::min(unit.size() + 1, path.size()));
    }
    return {};
}

}  // namespace

std::optional<ProcessReading> processIn(std::string_view stat) noexcept {
    // A name may hold brackets, blanks and line ends: it ends at the last bracket.
    const std::size_t open = stat.find(" ("), close = stat.rfind(") ");
    if (open == stat.npos || close == stat.npos || close < open + 2 || !stat.ends_with('\n'))
        return std::nullopt;
    stat.remove_suffix(1);
    ProcessReading process;
    if (!parse(stat.substr(0, open), process.id) || !readFigures(stat.substr(close + 2), process))
        return std::nullopt;
    setName(process, stat.substr(open + 2, close - open - 2));
    return process;
}

std::string_view applicationPathIn(std::string_view cgroup) noexcept {
    while (!cgroup.empty()) {
        const std::string_view line = takeLine(cgroup);
        // The one hierarchy of today, or in that of yesterday the service manager's own.
        for (const std::string_view kind : {"0::", ":name=systemd:"}) {
            const std::size_t at = line.find(kind);
            if (at == line.npos || (kind.front() == '0' && at != 0))
                continue;
            const auto path = applicationInPath(line.substr(at + kind.size()));
            if (!path.empty())
                return path;
        }
    }
    return {};
}

std::optional<std::string_view> ArgumentReader::next() noexcept {
    const std::size_t length = rest_.find('\0');
    if (length == rest_.npos)
        return std::nullopt;
    const std::string_view argument = rest_.substr(0, length);
    rest_.remove_prefix(length + 1);
    return argument;
}

std::string_view baseName(std::string_view path) noexcept {
    return path.substr(path.rfind('/') + 1);  // none: npos + 1 is the start
}

}  // namespace vantor
