#include "Hosts/Menu/MenuLayout.h"

#include <algorithm>
#include <utility>

#include "Shared/Views/StatInterfaceView.h"

namespace vantor {

/// A row whose width is the one that it was given here has its own one noted; any other width
/// somebody gave it since.
double MenuLayout::ownWidthOf(const VTRMenuItem& item) const noexcept {
    const double width = item.view()->frame().width;
    const Row* const row = rowOf(&item);
    return row != nullptr && width == size_.width ? row->ownWidth : width;
}

void MenuLayout::update(const VTRMenu::Items& items) {
    std::vector<Row> rows;
    rows.reserve(items.size());
    Size size;
    for (const auto& item : items)
        if (const StatInterfaceView* const view = item->view()) {
            const double width = ownWidthOf(*item), height = view->frame().height;
            rows.push_back({item, width, size.height, height});
            size = {std::max(size.width, width), size.height + height};
        }
    const std::vector<Row> before = std::exchange(rows_, std::move(rows));
    const double widthBefore = std::exchange(size_, size).width;
    for (const Row& row : rows_)
        row.item->view()->setFrameSize({size_.width, row.height});
    for (const Row& row : before)
        if (StatInterfaceView* const view = row.item->anyView(); view != nullptr &&
                                                                 rowOf(row.item.get()) == nullptr &&
                                                                 view->frame().width == widthBefore)
            view->setFrameSize({row.ownWidth, view->frame().height});
}

void MenuLayout::clear() noexcept {
    const std::vector<Row> before = std::exchange(rows_, {});
    for (const Row& row : before)
        if (StatInterfaceView* const view = row.item->anyView();
            view != nullptr && view->frame().width == size_.width)
            view->setFrameSize({row.ownWidth, view->frame().height});
    size_ = {};
}

const MenuLayout::Row* MenuLayout::rowAt(double y) const noexcept {
    const auto below =
        std::ranges::upper_bound(rows_, y, {}, [](const Row& row) { return row.y + row.height; });
    return below == rows_.end() || y < below->y ? nullptr : &*below;
}

const MenuLayout::Row* MenuLayout::rowOf(const VTRMenuItem* item) const noexcept {
    const auto row =
        std::ranges::find(rows_, item, [](const Row& each) { return each.item.get(); });
    return row == rows_.end() ? nullptr : &*row;
}

const MenuLayout::Row* MenuLayout::rowWithView(const View& root) const noexcept {
    const auto row = std::ranges::find_if(
        rows_, [&root](const Row& each) { return each.item->view() == &root; });
    return row == rows_.end() ? nullptr : &*row;
}

bool MenuLayout::isPlaced(const Row& row) const noexcept {
    const StatInterfaceView* const view = row.item->view();
    return view != nullptr && view->frame().size() == Size{size_.width, row.height};
}

}  // namespace vantor
