#include "Hosts/Text/TextBars.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantor {
namespace {

constexpr std::size_t kEighths = 8;

constexpr std::array<std::string_view, kEighths + 1> kRisingBlocks{" ", "▁", "▂", "▃", "▄",
                                                                   "▅", "▆", "▇", "█"};
constexpr std::array<std::string_view, kEighths + 1> kRisingASCII{" ", "_", ".", ":", "-",
                                                                  "=", "+", "*", "#"};
constexpr std::array<std::string_view, kEighths + 1> kGrowingBlocks{" ", "▏", "▎", "▍", "▌",
                                                                    "▋", "▊", "▉", "█"};

/// A share as a part of 1, 0 where it isn't a number.
double part(double percent) noexcept {
    return std::isfinite(percent) ? std::clamp(percent / 100, 0.0, 1.0) : 0;
}

/// Where the parts of a bar end, in eighths of a column.
struct BarEnds {
    std::array<std::size_t, 3> ends{};
    static constexpr std::array<Ink, 3> kInks{Ink::user, Ink::system, Ink::nice};

    Ink inkAt(std::size_t eighth) const noexcept {
        for (std::size_t part = 0; part < ends.size(); ++part)
            if (eighth < ends[part])
                return kInks[part];
        return Ink::plain;
    }
    /// The first end behind `eighth`, or something past the bar.
    std::size_t endBehind(std::size_t eighth) const noexcept {
        for (const std::size_t end : ends)
            if (end > eighth)
                return end;
        return static_cast<std::size_t>(-1);
    }
};

BarEnds barEnds(const ProcessorShares& shares, std::size_t width) noexcept {
    const std::array parts{part(shares.user), part(shares.system), part(shares.nice)};
    const auto whole = static_cast<double>(width * kEighths);
    BarEnds bar;
    double sum = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        sum = std::min(sum + parts[i], 1.0);
        bar.ends[i] = static_cast<std::size_t>(std::lround(sum * whole));
    }
    if (sum > 0 && bar.ends.back() == 0) {  // too little to show: show the largest part
        const auto largest = std::ranges::max_element(parts) - parts.begin();
        std::fill(bar.ends.begin() + largest, bar.ends.end(), 1);
    }
    return bar;
}

/// A column in which two parts may meet: the one as glyph, the other behind it.
void addBlended(TextLine& line, const BarEnds& bar, std::size_t start) {
    const Ink left = bar.inkAt(start);
    const std::size_t end = bar.endBehind(start);
    if (left == Ink::plain)
        line.addCell(Ink::dim, Ink::plain, emptyGlyph(Glyphs::unicode));
    else if (end >= start + kEighths)
        line.addCell(left, Ink::plain, kGrowingBlocks[kEighths]);
    else
        line.addCell(left, bar.inkAt(end), kGrowingBlocks[end - start]);
}

/// A column of the part that covers its middle; a load is never rounded away altogether.
void addWhole(TextLine& line, const BarEnds& bar, std::size_t start,
              const TerminalAbilities& abilities) {
    const Ink ink = bar.inkAt(start == 0 ? 0 : start + kEighths / 2);
    line.addCell(ink == Ink::plain ? Ink::dim : ink, Ink::plain, partGlyph(ink, abilities));
}

/// 1 to `highest`, for something that was measured.
std::size_t level(double used, std::size_t highest) noexcept {
    const auto rounded = std::lround(part(used) * static_cast<double>(highest));
    return std::max<std::size_t>(1, static_cast<std::size_t>(rounded));
}

std::string_view risingGlyph(std::size_t eighths, Glyphs glyphs) noexcept {
    return glyphs == Glyphs::unicode ? kRisingBlocks[eighths] : kRisingASCII[eighths];
}

}  // namespace

std::string_view partGlyph(Ink part, const TerminalAbilities& abilities) noexcept {
    const bool unicode = abilities.glyphs == Glyphs::unicode;
    const bool coloured = abilities.colours != ColourDepth::none;
    switch (part) {
    case Ink::user:
        return unicode ? "█" : "#";
    case Ink::system:
        return unicode ? (coloured ? "█" : "▓") : "=";
    case Ink::nice:
        return unicode ? (coloured ? "█" : "▒") : "-";
    default:
        return emptyGlyph(abilities.glyphs);
    }
}

std::string_view emptyGlyph(Glyphs glyphs) noexcept {
    return glyphs == Glyphs::unicode ? "·" : ".";
}

void addSplitBar(TextLine& line, const ProcessorShares& shares, std::size_t width,
                 const TerminalAbilities& abilities) {
    const BarEnds bar = barEnds(shares, width);
    const bool blended =
        abilities.glyphs == Glyphs::unicode && abilities.colours != ColourDepth::none;
    for (std::size_t column = 0; column < width; ++column)
        if (blended)
            addBlended(line, bar, column * kEighths);
        else
            addWhole(line, bar, column * kEighths, abilities);
}

void addMark(TextLine& line, double used, const TerminalAbilities& abilities) {
    line.addCell(Ink::graph, Ink::plain, risingGlyph(level(used, kEighths), abilities.glyphs));
}

void fillHistoryColumns(const UsageHistory& history, double secondsAColumn,
                        std::vector<HistoryColumn>& into) {
    std::ranges::fill(into, HistoryColumn{});
    const double newest = std::floor(history.newestTime / secondsAColumn);
    for (const UsageHistory::Point& point : history.points) {
        const double age = newest - std::floor(point.time / secondsAColumn);
        // A clock that was set back leaves points that are older than they say.
        if (!(age >= 0 && age < static_cast<double>(into.size())))
            continue;
        HistoryColumn& column = into[into.size() - 1 - static_cast<std::size_t>(age)];
        column.sum += point.used;
        ++column.count;
    }
}

void addGraphRow(TextLine& line, const std::vector<HistoryColumn>& columns, std::size_t row,
                 std::size_t height, Glyphs glyphs) {
    const std::size_t below = row * kEighths;
    for (const HistoryColumn& column : columns) {
        if (column.count == 0) {
            const std::string_view gap = row == 0 ? emptyGlyph(glyphs) : " ";
            line.addCell(Ink::dim, Ink::plain, gap);
            continue;
        }
        const std::size_t top = level(column.mean(), height * kEighths);
        const std::size_t eighths = top > below ? std::min(top - below, kEighths) : 0;
        line.addCell(Ink::graph, Ink::plain, risingGlyph(eighths, glyphs));
    }
}

}  // namespace vantor
