#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "Foundation/Geometry.h"
#include "Shared/VTRMenu.h"
#include "Shared/Views/View.h"

namespace vantor {

/// Where the rows of an open menu stand: one below the other, each as wide as the widest, so that
/// what is in them follows its margins. They have their own widths back when they leave.
/// Units:  points, from the upper left of the first row.
/// Thread: main. Holds its rows.
class MenuLayout {
public:
    struct Row {
        std::shared_ptr<VTRMenuItem> item;
        double ownWidth, y, height;
    };

    MenuLayout() = default;
    ~MenuLayout() { clear(); }
    MenuLayout(const MenuLayout&) = delete;
    MenuLayout& operator=(const MenuLayout&) = delete;

    /// Rows without a view have no place.
    void update(const VTRMenu::Items& items);
    void clear() noexcept;

    Size size() const noexcept { return size_; }
    const std::vector<Row>& rows() const noexcept { return rows_; }
    Rect frameOf(const Row& row) const noexcept { return {0, row.y, size_.width, row.height}; }
    /// The row at that height; null above, below, and where there is none.
    const Row* rowAt(double y) const noexcept;
    const Row* rowOf(const VTRMenuItem* item) const noexcept;
    const Row* rowWithView(const View& root) const noexcept;
    /// Whether the row still has the size that it was given here.
    bool isPlaced(const Row& row) const noexcept;

private:
    double ownWidthOf(const VTRMenuItem& item) const noexcept;

    std::vector<Row> rows_;
    Size size_;
};

}  // namespace vantor
