#pragma once

#include <cstdint>
#include <span>

#include "Foundation/WeakHandle.h"
#include "Hosts/Menu/MenuGeometry.h"
#include "Hosts/Menu/MenuLayout.h"
#include "Painting/Context.h"
#include "Shared/VTRMenu.h"
#include "Shared/Views/View.h"

namespace vantor {

class MenuPicture;

/// Who shows the picture of a menu.
class MenuPictureOwner {
public:
    /// Its rows are others, or have other sizes: `layOut` belongs before the next paint.
    virtual void picturesRowsChanged(MenuPicture& picture) = 0;
    /// `part` of its window wants to be painted.
    virtual void pictureChanged(MenuPicture& picture, const Rect& part) = 0;

protected:
    ~MenuPictureOwner() = default;
};

/// What the window of one open menu shows: its rows from the scroll's offset on, with an arrow at
/// an edge beyond which there are more. It paints nothing by itself, and keeps no pixels.
/// Units:  points; places are in the window, from its upper left.
/// Errors: a menu that has ended shows its ground alone.
/// Thread: main. The menu has no other host meanwhile.
class MenuPicture final : public VTRMenuHost, public ViewWindow {
public:
    static constexpr double kArrowHeight = 16;

    enum class Arrow : std::uint8_t { none, up, down };

    /// The menu is told that it opens first.
    MenuPicture(VTRMenu& menu, MenuPictureOwner& owner);
    /// And that it has closed, if there still is such a menu.
    ~MenuPicture() override;
    MenuPicture(const MenuPicture&) = delete;
    MenuPicture& operator=(const MenuPicture&) = delete;

    /// Null once it has ended.
    VTRMenu* menu() const noexcept { return menu_.get(); }
    const MenuLayout& layout() const noexcept { return layout_; }
    const MenuScroll& scroll() const noexcept { return scroll_; }

    /// Places the rows, as many as fit into `mostHeight`. Answers the size of the window.
    Size layOut(double mostHeight);
    /// The row there; null under an arrow, too.
    const MenuLayout::Row* rowAt(Point point) const noexcept;
    Arrow arrowAt(Point point) const noexcept;
    Rect frameOf(const MenuLayout::Row& row) const noexcept;
    /// The innermost view there, or null.
    View* viewAt(Point point) const;
    /// Where a view of one of the rows shows.
    Rect frameOf(const View& view) const noexcept;

    // What was asked for shows; the owner hears of it where that changes anything.
    void scrollBy(double points);
    void reveal(const MenuLayout::Row& row);

    void paint(Painting::Context& context, std::span<const Rect> parts);

    void menuChanged(VTRMenu& menu) override;
    void setNeedsDisplay(View& root, View& view) override;

private:
    Rect window() const noexcept { return {0, 0, layout_.size().width, scroll_.window}; }
    Rect upArrow() const noexcept { return {0, 0, layout_.size().width, kArrowHeight}; }
    Rect downArrow() const noexcept {
        return {0, scroll_.window - kArrowHeight, layout_.size().width, kArrowHeight};
    }
    void paintPart(Painting::Context& context, const Rect& part);
    void paintArrow(Painting::Context& context, const Rect& place, Arrow arrow);

    WeakHandle<VTRMenu> menu_;
    MenuPictureOwner& owner_;
    MenuLayout layout_;
    MenuScroll scroll_;
    bool isLayingOut_ = false;
};

}  // namespace vantor
