#include "Hosts/Menu/MenuPicture.h"

#include <algorithm>
#include <cmath>

#include "Painting/Path.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

constexpr double kArrowWidth = 9, kArrowRise = 5;

Painting::Origin originOf(const View& view) {
    return view.isFlipped() ? Painting::Origin::upperLeft : Painting::Origin::lowerLeft;
}

/// A point of a row in the row's own view, whose y may grow upwards, and back.
Point flippedFor(const View& root, Point point) noexcept {
    return root.isFlipped() ? point : Point{point.x, root.frame().height - point.y};
}

/// The rectangle of a view of a row, from the upper left of the row.
Rect frameInRow(const View& root, const View& view) noexcept {
    const Size size = view.frame().size();
    const Point one = flippedFor(root, view.convertToRoot({0, 0}));
    const Point other = flippedFor(root, view.convertToRoot({size.width, size.height}));
    return {one.x, std::min(one.y, other.y), size.width, size.height};
}

}  // namespace

MenuPicture::MenuPicture(VTRMenu& menu, MenuPictureOwner& owner)
    : menu_(menu.handle()), owner_(owner) {
    if (VTRMenuDelegate* const delegate = menu.delegate())
        delegate->menuWillOpen(menu);
    menu.setHost(this, this);
}

MenuPicture::~MenuPicture() {
    isLayingOut_ = true;  // rows that get their widths back aren't shown any more
    VTRMenu* const menu = menu_.get();
    if (menu == nullptr)
        return;
    if (VTRMenuDelegate* const delegate = menu->delegate())
        delegate->menuDidClose(*menu);
    menu->setHost(nullptr, nullptr);
}

Size MenuPicture::layOut(double mostHeight) {
    isLayingOut_ = true;
    if (const VTRMenu* const menu = menu_.get())
        layout_.update(menu->itemArray());
    else
        layout_.clear();
    isLayingOut_ = false;
    const Size size = layout_.size();
    scroll_.fit(size.height, std::max(1.0, std::min(size.height, std::floor(mostHeight))));
    return {std::max(1.0, size.width), scroll_.window};
}

MenuPicture::Arrow MenuPicture::arrowAt(Point point) const noexcept {
    if (scroll_.canScrollUp() && contains(upArrow(), point))
        return Arrow::up;
    return scroll_.canScrollDown() && contains(downArrow(), point) ? Arrow::down : Arrow::none;
}

const MenuLayout::Row* MenuPicture::rowAt(Point point) const noexcept {
    if (!contains(window(), point) || arrowAt(point) != Arrow::none)
        return nullptr;
    return layout_.rowAt(point.y + scroll_.offset);
}

Rect MenuPicture::frameOf(const MenuLayout::Row& row) const noexcept {
    Rect frame = layout_.frameOf(row);
    frame.y -= scroll_.offset;
    return frame;
}

Rect MenuPicture::frameOf(const View& view) const noexcept {
    const View* root = &view;
    while (root->superview() != nullptr)
        root = root->superview();
    const MenuLayout::Row* const row = layout_.rowWithView(*root);
    if (row == nullptr)
        return {};
    const Rect inRow = frameInRow(*root, view);
    return {inRow.x, row->y - scroll_.offset + inRow.y, inRow.width, inRow.height};
}

View* MenuPicture::viewAt(Point point) const {
    const MenuLayout::Row* const row = rowAt(point);
    StatInterfaceView* const view = row != nullptr ? row->item->view() : nullptr;
    if (view == nullptr)
        return nullptr;
    return view->hitTest(flippedFor(*view, {point.x, point.y + scroll_.offset - row->y}));
}

void MenuPicture::scrollBy(double points) {
    if (scroll_.moveBy(points))
        owner_.pictureChanged(*this, window());
}

void MenuPicture::reveal(const MenuLayout::Row& row) {
    const double margin = scroll_.most() > 0 ? kArrowHeight : 0;
    if (scroll_.reveal(row.y, row.height, margin))
        owner_.pictureChanged(*this, window());
}

void MenuPicture::paint(Painting::Context& context, std::span<const Rect> parts) {
    for (const Rect& part : parts) {
        const Painting::StateSaver saved(context);
        context.clip(part);
        paintPart(context, part);
    }
}

void MenuPicture::paintPart(Painting::Context& context, const Rect& part) {
    context.fill(part, menuBackground());
    if (menu_.get() == nullptr)
        return;
    for (const MenuLayout::Row& row : layout_.rows()) {
        const Rect frame = frameOf(row);
        StatInterfaceView* const view = row.item->view();
        if (view == nullptr || isEmpty(intersection(frame, part)))
            continue;
        Painting::Context inside(context, frame, originOf(*view));
        view->display(inside);
    }
    if (scroll_.canScrollUp())
        paintArrow(context, upArrow(), Arrow::up);
    if (scroll_.canScrollDown())
        paintArrow(context, downArrow(), Arrow::down);
}

void MenuPicture::paintArrow(Painting::Context& context, const Rect& place, Arrow arrow) {
    context.fill(place, menuBackground());
    const double middle = place.x + place.width / 2;
    const double high = place.y + (place.height - kArrowRise) / 2, low = high + kArrowRise;
    const double tip = arrow == Arrow::up ? high : low, base = arrow == Arrow::up ? low : high;
    Painting::Path path;
    path.moveTo({middle, tip});
    path.lineTo({middle - kArrowWidth / 2, base});
    path.lineTo({middle + kArrowWidth / 2, base});
    path.close();
    context.fill(path, themed(grey(0.49), grey(0.58)));
}

void MenuPicture::menuChanged(VTRMenu&) {
    if (!isLayingOut_)
        owner_.picturesRowsChanged(*this);
}

void MenuPicture::setNeedsDisplay(View& root, View& view) {
    if (isLayingOut_)
        return;
    const MenuLayout::Row* const row = layout_.rowWithView(root);
    if (row == nullptr)
        return;  // it comes with the next layout
    if (!layout_.isPlaced(*row)) {
        owner_.picturesRowsChanged(*this);
        return;
    }
    const Rect part = intersection(frameOf(view), window());
    if (!isEmpty(part))
        owner_.pictureChanged(*this, part);
}

}  // namespace vantor
