#include "Hosts/Text/CoreLayout.h"

#include <algorithm>

namespace vantor {
namespace {

constexpr std::size_t kNarrowestBar = 6;
constexpr std::size_t kPleasantColumn = 50;

std::size_t dividedUp(std::size_t number, std::size_t by) noexcept {
    return (number + by - 1) / by;
}

/// What a column of bars takes beside the bar: number, blank, blank, value.
std::size_t besideBar(std::size_t cores) noexcept {
    return digitCount(cores) + 2 + CoreLayout::kValueWidth;
}

CoreLayout bars(std::size_t cores, std::size_t width, std::size_t perRow) noexcept {
    const std::size_t rows = dividedUp(cores, perRow);
    const std::size_t columns = dividedUp(cores, rows);  // some may have become superfluous
    const std::size_t column = (width - CoreLayout::kGap * (columns - 1)) / columns;
    return {CoreLayout::Kind::bars, rows, columns, column - besideBar(cores), 1};
}

/// Marks in a row `width` wide that begins with a number and has a blank before each group.
std::size_t marksARow(std::size_t width, std::size_t numberWidth) noexcept {
    const std::size_t room = width > numberWidth ? width - numberWidth : 0;
    const std::size_t groups = room / (CoreLayout::kGroup + 1);
    return std::max<std::size_t>(groups * CoreLayout::kGroup, 1);
}

CoreLayout marks(std::size_t cores, std::size_t width, std::size_t rows) noexcept {
    const std::size_t perRow = marksARow(width, digitCount(cores));
    const std::size_t coresAMark = std::max<std::size_t>(dividedUp(cores, perRow * rows), 1);
    return {CoreLayout::Kind::marks, dividedUp(dividedUp(cores, coresAMark), perRow), perRow, 0,
            coresAMark};
}

}  // namespace

std::size_t digitCount(std::size_t number) noexcept {
    std::size_t digits = 1;
    for (; number >= 10; number /= 10)
        ++digits;
    return digits;
}

CoreLayout coreLayout(std::size_t cores, std::size_t width, std::size_t lines) noexcept {
    if (cores == 0)
        return {};
    const std::size_t narrowest = besideBar(cores) + kNarrowestBar;
    const std::size_t most = (width + CoreLayout::kGap) / (narrowest + CoreLayout::kGap);
    const std::size_t pleasant = std::max<std::size_t>((width + 20) / kPleasantColumn, 1);
    for (std::size_t perRow = std::min(pleasant, cores); perRow <= most; ++perRow)
        if (dividedUp(cores, perRow) <= lines)
            return bars(cores, width, std::min(perRow, cores));
    return marks(cores, width, std::max<std::size_t>(lines, 2) - 1);
}

}  // namespace vantor
