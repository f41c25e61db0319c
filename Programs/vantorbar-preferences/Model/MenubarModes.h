#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

/// What the item shows, in its order, and what it could show: the list that "CPU_MenubarMode" is
/// edited as.
/// Shape:  a row for each entry of the stored text, in its order, then one for each known mode that
///         isn't among them, not shown. An entry that isn't a number is mode 0, as painters read
///         it; a number that stands for nothing keeps its row and its place.
/// Errors: the last mode that shows something can't be taken away: an item without any would be
///         nowhere, and the empty text would show a history graph.
class MenubarModes {
public:
    struct Row {
        std::int64_t mode = 0;
        bool shown = false;
        bool operator==(const Row&) const = default;
    };

    explicit MenubarModes(std::string_view stored);

    const std::vector<Row>& rows() const noexcept { return rows_; }
    static bool isKnown(std::int64_t mode) noexcept;
    /// As it is stored: the modes that are shown.
    std::string text() const;

    bool canHide(std::size_t row) const noexcept;
    /// Whether anything changed.
    bool setShown(std::size_t row, bool shown) noexcept;
    /// The row takes the place of the one at `to`, and those between move up or down.
    bool move(std::size_t row, std::size_t to) noexcept;
    /// The nearest row above or below that is of a known mode, or `row` itself.
    std::size_t neighbour(std::size_t row, int step) const noexcept;

    /// After somebody else may have written: rows that say just that keep their places.
    /// Whether anything changed.
    bool follow(std::string_view stored);

private:
    std::vector<Row> rows_;
};

}  // namespace vantor
