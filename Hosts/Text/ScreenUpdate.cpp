#include "Hosts/Text/ScreenUpdate.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>

#include <fmt/format.h>

namespace vantor {
namespace {

// Terminals that know these two show what is between them at once; the others ignore them.
constexpr std::string_view kBegin = "\x1b[?2026h";
constexpr std::string_view kEnd = "\x1b[?2026l";
constexpr std::string_view kEraseRestOfLine = "\x1b[K";
constexpr std::string_view kEraseRestOfScreen = "\x1b[J";

void moveToLine(std::string& bytes, std::size_t line) {
    fmt::format_to(std::back_inserter(bytes), "\x1b[{};1H", line + 1);
}

}  // namespace

bool ScreenUpdate::hasLeftovers(std::size_t below) const noexcept {
    const auto isWritten = [](const std::string& line) { return !line.empty(); };
    return !known_ || (below < shown_.size() &&
                       std::any_of(shown_.begin() + static_cast<std::ptrdiff_t>(below),
                                   shown_.end(), isWritten));
}

std::string_view ScreenUpdate::to(const TextFrame& frame) {
    const std::span<const TextLine> lines = frame.lines();
    const bool leftovers = hasLeftovers(lines.size());
    if (shown_.size() < lines.size())
        shown_.resize(lines.size());
    bytes_ = kBegin;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        // What is below goes from the end of the last line: there may be no line behind it.
        const bool erasesBelow = leftovers && line + 1 == lines.size();
        if (known_ && !erasesBelow && shown_[line] == lines[line].text())
            continue;
        moveToLine(bytes_, line);
        bytes_ += lines[line].text();
        bytes_ += erasesBelow ? kEraseRestOfScreen : kEraseRestOfLine;
        shown_[line] = lines[line].text();
    }
    // Kept empty, with their memory, for a frame that grows again.
    for (std::size_t line = lines.size(); line < shown_.size(); ++line)
        shown_[line].clear();
    known_ = true;
    if (bytes_.size() == kBegin.size())
        return {};
    bytes_ += kEnd;
    return bytes_;
}

}  // namespace vantor
