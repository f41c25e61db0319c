#include "Hosts/Text/TextFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>

#include <fmt/format.h>

#include "Hosts/Text/CoreLayout.h"

namespace vantor {
namespace {

constexpr std::size_t kMargin = 1;
constexpr std::size_t kGraphHeight = 4;  // rows at most

/// A short text made in place.
class Words {
public:
    template <class... Values>
    explicit Words(fmt::format_string<Values...> format, Values&&... values) {
        const auto made =
            fmt::format_to_n(text_.data(), text_.size(), format, std::forward<Values>(values)...);
        size_ = std::min(made.size, text_.size());
    }
    operator std::string_view() const noexcept { return {text_.data(), size_}; }
    std::size_t size() const noexcept { return size_; }

private:
    std::array<char, 96> text_;
    std::size_t size_ = 0;
};

/// Five columns wide, whatever the figure.
Words percent(double share) {
    return std::isfinite(share) ? Words("{:5.1f}", std::clamp(share, 0.0, 999.9)) : Words("    -");
}

Words countsText(const TextFigures& figures) {
    if (!figures.mean)
        return Words("   - tasks      - threads");
    return Words("{:4} tasks  {:5} threads", figures.tasks, figures.threads);
}

Words loadsText(const TextFigures& figures) {
    if (!figures.loads)
        return Words("load     -     -     -");
    const auto& [one, five, fifteen] = *figures.loads;
    return Words("load {:5.2f} {:5.2f} {:5.2f}", one, five, fifteen);
}

double idle(const ProcessorShares& shares) noexcept { return std::max(0.0, 100 - shares.used()); }

/// Names a part of the bars above it; apart from them where it can be.
std::string_view swatch(Ink part, const TerminalAbilities& abilities) noexcept {
    const bool isColour = part != Ink::plain && abilities.glyphs == Glyphs::unicode &&
                          abilities.colours != ColourDepth::none;
    return isColour ? "■" : partGlyph(part, abilities);
}

struct HistoryRow {
    std::string_view label;
    UsageHistory TextFigures::*history;
    double seconds;
    // The longest time between two of its samples: a column below that would look like a gap.
    double shortestColumn;
};

constexpr std::array<HistoryRow, 2> kHistories{{
    {"10 min", &TextFigures::tenMinutes, 600, 3},
    {"1 hour", &TextFigures::hour, 3600, 6},
}};
constexpr std::size_t kHistoryLabelWidth = 7;  // with the blank behind it

/// How the lines below the summary are shared out.
struct LowerPart {
    CoreLayout cores;
    std::size_t histories = 0;    // how many, from the last of kHistories
    std::size_t graphHeight = 1;  // rows of each
    bool spaced = false;          // a blank line before each part
};

LowerPart lowerPart(std::size_t cores, std::size_t width, std::size_t lines) noexcept {
    LowerPart lower;
    lower.histories = lines > 2 ? 2 : lines > 1 ? 1 : 0;
    const std::size_t parts = lower.histories + 1;
    const std::size_t tight = lines - lower.histories;
    if (lines >= 2 * parts) {  // blank lines must not cost the cores their layout
        const CoreLayout close = coreLayout(cores, width, tight);
        const CoreLayout spaced = coreLayout(cores, width, tight - parts);
        lower.spaced = close.kind == spaced.kind && close.coresAMark == spaced.coresAMark;
    }
    const std::size_t blanks = lower.spaced ? parts : 0;
    lower.cores = coreLayout(cores, width, tight - blanks);
    const std::size_t taken = lower.cores.lines() + blanks + lower.histories;
    const std::size_t spare = lines > taken ? lines - taken : 0;
    if (lower.histories > 0)
        lower.graphHeight = std::min(1 + spare / lower.histories, kGraphHeight);
    return lower;
}

}  // namespace

/// Draws one frame, from top to bottom.
class FrameWriter {
public:
    FrameWriter(TextFrame& frame, const TextFigures& figures, const TerminalShape& shape)
        : frame_(frame), figures_(figures), shape_(shape),
          width_(shape.columns > 2 * kMargin ? shape.columns - 2 * kMargin : 1) {
        frame_.count_ = 0;
    }

    void write() {
        writeTitle();
        writeBar();
        writeLegend();
        if (!countsInTitle_)
            writeCounts();
        writeLowerPart();
        for (std::size_t line = 0; line < frame_.count_; ++line)
            frame_.lines_[line].finish();
        frame_.count_ = std::min(frame_.count_, shape_.rows);
    }

private:
    TextLine& newLine() {
        if (frame_.count_ == frame_.lines_.size())
            frame_.lines_.emplace_back();
        TextLine& line = frame_.lines_[frame_.count_++];
        line.start(shape_.abilities.colours, kMargin + width_);
        line.addSpace(kMargin);
        return line;
    }

    ProcessorShares shares() const { return figures_.mean.value_or(ProcessorShares{}); }

    /// A share as text, which it has only once there was a measurement.
    Words measured(double share) const { return figures_.mean ? percent(share) : Words("    -"); }

    void writeTitle() {
        TextLine& line = newLine();
        line.add(Ink::strong, Words("CPU  {} %", measured(shares().used())));
        const Words counts = countsText(figures_);
        const Words loads = loadsText(figures_);
        countsInTitle_ = line.columns() + 3 + counts.size() + 3 + loads.size() <= kMargin + width_;
        if (countsInTitle_) {
            line.padTo(kMargin + width_ - loads.size() - 3 - counts.size());
            line.add(Ink::plain, counts);
        }
        line.addSpace(2);
        line.padTo(kMargin + width_ - std::min(loads.size(), width_));
        line.add(Ink::plain, loads);
    }

    void writeBar() { addSplitBar(newLine(), shares(), width_, shape_.abilities); }

    void writeLegend() {
        struct Entry {
            std::string_view name;
            Ink ink;
            double share;
        };
        const std::array<Entry, 4> entries{{{"user", Ink::user, shares().user},
                                            {"system", Ink::system, shares().system},
                                            {"nice", Ink::nice, shares().nice},
                                            {"idle", Ink::plain, idle(shares())}}};
        TextLine* line = &newLine();
        for (const auto& [name, ink, share] : entries) {
            const Words value("{} {} %", name, figures_.mean ? percent(share) : Words("    -"));
            const bool begins = line->columns() == kMargin;
            if (!begins && line->columns() + 5 + value.size() > kMargin + width_)
                line = &newLine();
            else if (!begins)
                line->addSpace(3);
            line->add(ink == Ink::plain ? Ink::dim : ink, swatch(ink, shape_.abilities), 1);
            line->addSpace(1);
            line->add(Ink::plain, value);
        }
    }

    void writeCounts() { newLine().add(Ink::plain, countsText(figures_)); }

    void writeLowerPart() {
        if (frame_.count_ >= shape_.rows)
            return;
        const LowerPart lower =
            lowerPart(figures_.cores.size(), width_, shape_.rows - frame_.count_);
        writeCores(lower);
        for (std::size_t i = kHistories.size() - lower.histories; i < kHistories.size(); ++i)
            writeHistory(kHistories[i], lower);
    }

    void writeCores(const LowerPart& lower) {
        if (figures_.cores.empty())
            return;
        if (lower.spaced)
            newLine();
        if (lower.cores.kind == CoreLayout::Kind::bars)
            writeBars(lower.cores);
        else
            writeMarks(lower.cores);
    }

    void writeBars(const CoreLayout& layout) {
        const std::size_t numberWidth = digitCount(figures_.cores.size());
        for (std::size_t row = 0; row < layout.rows; ++row) {
            TextLine& line = newLine();
            for (std::size_t core = row; core < figures_.cores.size(); core += layout.rows) {
                line.addSpace(core == row ? 0 : CoreLayout::kGap);
                line.add(Ink::dim, Words("{:{}} ", core + 1, numberWidth));
                addSplitBar(line, figures_.cores[core], layout.barWidth, shape_.abilities);
                line.add(Ink::plain, Words(" {}", measured(figures_.cores[core].used())));
            }
        }
    }

    void writeMarks(const CoreLayout& layout) {
        const std::size_t cores = figures_.cores.size();
        const std::size_t coresARow = layout.perRow * layout.coresAMark;
        newLine().add(Ink::dim, layout.coresAMark == 1
                                    ? Words("{} cores", cores)
                                    : Words("{} cores, {} to a mark", cores, layout.coresAMark));
        for (std::size_t first = 0; first < cores; first += coresARow) {
            TextLine& line = newLine();
            line.add(Ink::dim, Words("{:{}}", first + 1, digitCount(cores)));
            for (std::size_t mark = 0; mark < layout.perRow; ++mark) {
                const std::size_t core = first + mark * layout.coresAMark;
                if (core >= cores)
                    break;
                line.addSpace(mark % CoreLayout::kGroup == 0 ? 1 : 0);
                addMark(line, meanUsed(core, layout.coresAMark), shape_.abilities);
            }
        }
    }

    double meanUsed(std::size_t first, std::size_t count) const noexcept {
        const std::size_t end = std::min(first + count, figures_.cores.size());
        double sum = 0;
        for (std::size_t core = first; core < end; ++core)
            sum += figures_.cores[core].used();
        return sum / static_cast<double>(end - first);
    }

    void writeHistory(const HistoryRow& row, const LowerPart& lower) {
        if (lower.spaced)
            newLine();
        const std::size_t room = width_ > kHistoryLabelWidth ? width_ - kHistoryLabelWidth : 1;
        const double columnsWanted = row.seconds / row.shortestColumn;
        const double secondsAColumn =
            row.shortestColumn * std::ceil(columnsWanted / static_cast<double>(room));
        frame_.columns_.resize(static_cast<std::size_t>(std::ceil(row.seconds / secondsAColumn)));
        fillHistoryColumns(figures_.*row.history, secondsAColumn, frame_.columns_);
        for (std::size_t above = lower.graphHeight; above-- > 0;) {
            TextLine& line = newLine();
            line.add(Ink::dim, above == 0 ? row.label : "");
            line.padTo(kMargin + kHistoryLabelWidth);
            addGraphRow(line, frame_.columns_, above, lower.graphHeight, shape_.abilities.glyphs);
        }
    }

    TextFrame& frame_;
    const TextFigures& figures_;
    const TerminalShape& shape_;
    std::size_t width_;
    bool countsInTitle_ = true;
};

void renderInto(TextFrame& frame, const TextFigures& figures, const TerminalShape& shape) {
    FrameWriter(frame, figures, shape).write();
}

TextFrame render(const TextFigures& figures, const TerminalShape& shape) {
    TextFrame frame;
    renderInto(frame, figures, shape);
    return frame;
}

void renderSummary(TextLine& line, const TextFigures& figures) {
    line.start(ColourDepth::none, std::numeric_limits<std::size_t>::max());
    const ProcessorShares shares = figures.mean.value_or(ProcessorShares{});
    line.add(Ink::plain, Words("cpu {} %  user {}  system {}  nice {}", percent(shares.used()),
                               percent(shares.user), percent(shares.system), percent(shares.nice)));
    line.add(Ink::plain, Words("  {}  {}", std::string_view(loadsText(figures)),
                               std::string_view(countsText(figures))));
}

}  // namespace vantor
