#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Foundation/Colour.h"
#include "Foundation/Geometry.h"
#include "Painting/Context.h"

namespace vantor::inline VANTOR_MODULE {

/// What of a view gives way when the view around it becomes wider or higher. What is named grows
/// by its share of the difference; without any, the view keeps its place and size.
enum class Resizing : std::uint8_t {
    none = 0,
    leftMargin = 1,
    width = 2,
    rightMargin = 4,
    bottomMargin = 8,
    height = 16,
    topMargin = 32,
};
constexpr Resizing operator|(Resizing one, Resizing other) noexcept {
    return static_cast<Resizing>(static_cast<std::uint8_t>(one) | static_cast<std::uint8_t>(other));
}
constexpr bool contains(Resizing all, Resizing one) noexcept {
    return (static_cast<std::uint8_t>(all) & static_cast<std::uint8_t>(one)) != 0;
}

class View;

/// Where a tree of views is shown: told which part of it wants to be painted anew.
class ViewWindow {
public:
    virtual ~ViewWindow() = default;
    /// `view` is the one that asked, `root` the top of its tree, which the window shows.
    virtual void setNeedsDisplay(View& root, View& view) = 0;
    /// The colour below all rows, from the first of them; nothing once it goes.
    virtual void setBackground(const std::optional<Colour>&) {}
};

/// A rectangle that paints itself and carries others: what rows, fields and graphs are made of.
/// Shape:  `frame` in the coordinates of the view around it; inside, the origin is at the lower
///         left, or the upper left of a flipped view.
/// Units:  points.
/// Errors: none. A view without area paints nothing.
/// Thread: main. A view may be shared by the row that names it and the view that shows it.
class View : public std::enable_shared_from_this<View> {
public:
    explicit View(const Rect& frame = {}) : frame_(frame) {}
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    /// The name of its kind, as state dumps and the catalogue tell it.
    virtual std::string_view className() const { return "View"; }
    virtual bool isFlipped() const { return false; }

    const Rect& frame() const noexcept { return frame_; }
    /// Moves the view; the views inside follow by what of them gives way.
    void setFrame(const Rect& frame);
    void setFrameSize(Size size) { setFrame({frame_.x, frame_.y, size.width, size.height}); }
    Rect bounds() const noexcept { return {0, 0, frame_.width, frame_.height}; }
    Resizing resizing() const noexcept { return resizing_; }
    void setResizing(Resizing resizing) noexcept { resizing_ = resizing; }

    View* superview() const noexcept { return superview_; }
    const std::vector<std::shared_ptr<View>>& subviews() const noexcept { return subviews_; }
    /// Takes it from where it was; it is painted after, and so above, those already here.
    void addSubview(std::shared_ptr<View> view);
    /// Whoever calls holds the view, or it ends here.
    void removeFromSuperview();

    /// Null while nothing shows the view.
    ViewWindow* window() const noexcept { return window_; }
    /// For windows: shows the tree below this view there, or nowhere.
    void setWindow(ViewWindow* window);

    bool hidden() const noexcept { return hidden_; }
    void setHidden(bool hidden);
    void setNeedsDisplay();
    bool needsDisplay() const noexcept { return needsDisplay_; }
    /// Whether this view or one inside it wants to be painted anew.
    bool treeNeedsDisplay() const noexcept;

    /// Paints the view and, above it, those inside; `context` is in the coordinates of this view.
    void display(Painting::Context& context);

    // What a row tells all that stands in it. Nothing for a view without colours of its own.
    virtual void updateColors() {}
    virtual void setMenuItemHighlighted(bool) {}

    // The pointer, in this view. A press and its release share the event's number.
    virtual void mouseDown(std::int64_t /*eventNumber*/) {}
    virtual void mouseUp(std::int64_t /*eventNumber*/) {}
    /// A press left the view: unless it comes back, with another `mouseDown`, there is no release.
    virtual void mouseExited() {}

    /// The innermost view at a point of this view's own coordinates; null outside.
    View* hitTest(Point point);
    /// A point of this view's own coordinates in those of the top of its tree.
    Point convertToRoot(Point point) const noexcept;

protected:
    virtual void draw(Painting::Context& context);
    /// The view came to a window or left one.
    virtual void viewDidMoveToWindow() {}

private:
    void resizeSubviews(Size oldSize);
    void resizeWithOldSuperviewSize(Size oldSize);
    /// The corner of a view inside in coordinates whose y grows as this view's does.
    Painting::Origin origin() const noexcept;

    Rect frame_;
    Resizing resizing_ = Resizing::none;
    View* superview_ = nullptr;
    ViewWindow* window_ = nullptr;
    bool hidden_ = false, needsDisplay_ = true;
    std::vector<std::shared_ptr<View>> subviews_;
};

}  // namespace vantor::inline VANTOR_MODULE
