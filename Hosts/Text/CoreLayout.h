#pragma once

#include <cstddef>

namespace vantor {

/// How many columns a number takes.
std::size_t digitCount(std::size_t number) noexcept;

/// Where the cores stand: as bars in columns, read downwards; or, where those have no room, as
/// marks in a grid, read along its rows.
struct CoreLayout {
    enum class Kind { bars, marks };
    static constexpr std::size_t kGap = 3;         // blanks between two columns of bars
    static constexpr std::size_t kGroup = 8;       // marks between two blanks of a grid's row
    static constexpr std::size_t kValueWidth = 5;  // "100.0"

    Kind kind = Kind::bars;
    std::size_t rows = 0;        // lines that bars or marks take, without a grid's heading
    std::size_t perRow = 0;      // columns of bars, or marks in a full row
    std::size_t barWidth = 0;    // of bars
    std::size_t coresAMark = 1;  // of marks
    /// Lines in all.
    std::size_t lines() const noexcept { return kind == Kind::marks ? rows + 1 : rows; }
};

/// The roomiest layout for `cores` within `width` columns and `lines` lines, of which there is
/// at least 1. With marks, as many cores share one as it takes.
CoreLayout coreLayout(std::size_t cores, std::size_t width, std::size_t lines) noexcept;

}  // namespace vantor
