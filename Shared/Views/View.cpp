#include "Shared/Views/View.h"

#include <algorithm>
#include <utility>

namespace vantor::inline VANTOR_MODULE {
namespace {

/// One axis of a frame: where it begins and how long it is.
struct Span {
    double begin, length;
};

/// What gives way along one axis: the margin before the view, the view, the margin behind it.
struct Flexible {
    bool before, inside, behind;
};

/// The span in a surrounding that was `oldLength` long and is `newLength` long now. What gives way
/// shares the difference by length; where all of it has none, in equal parts.
Span resized(const Span& span, double oldLength, double newLength, const Flexible& flexible) {
    const double lengths[] = {span.begin, span.length, oldLength - span.begin - span.length};
    const bool gives[] = {flexible.before, flexible.inside, flexible.behind};
    double total = 0;
    int count = 0;
    for (std::size_t part = 0; part < 3; ++part)
        if (gives[part]) {
            total += std::max(lengths[part], 0.0);
            ++count;
        }
    const double difference = newLength - oldLength;
    const auto share = [&](std::size_t part) {
        if (!gives[part])
            return 0.0;
        if (count == 1)
            return difference;
        return total > 0 ? difference * std::max(lengths[part], 0.0) / total : difference / count;
    };
    return {span.begin + share(0), span.length + share(1)};
}

/// Views without area touch all: they have nothing to paint, and no longer wait for it.
bool touches(const Rect& reached, const Rect& view) noexcept {
    return view.x < reached.x + reached.width && reached.x < view.x + view.width &&
           view.y < reached.y + reached.height && reached.y < view.y + view.height;
}

}  // namespace

View::~View() {
    for (const std::shared_ptr<View>& view : subviews_)
        view->superview_ = nullptr;
}

void View::setFrame(const Rect& frame) {
    if (frame == frame_)
        return;
    const Size oldSize = frame_.size();
    setNeedsDisplay();
    frame_ = frame;
    if (!(oldSize == frame_.size()))
        resizeSubviews(oldSize);
    setNeedsDisplay();
}

void View::resizeSubviews(Size oldSize) {
    for (const std::shared_ptr<View>& view : subviews_)
        view->resizeWithOldSuperviewSize(oldSize);
}

void View::resizeWithOldSuperviewSize(Size oldSize) {
    if (resizing_ == Resizing::none)
        return;
    const Size size = superview_->frame_.size();
    const bool flipped = superview_->isFlipped();
    const Span across =
        resized({frame_.x, frame_.width}, oldSize.width, size.width,
                {contains(resizing_, Resizing::leftMargin), contains(resizing_, Resizing::width),
                 contains(resizing_, Resizing::rightMargin)});
    const bool top = contains(resizing_, Resizing::topMargin);
    const bool bottom = contains(resizing_, Resizing::bottomMargin);
    const Span along = resized(
        {frame_.y, frame_.height}, oldSize.height, size.height,
        {flipped ? top : bottom, contains(resizing_, Resizing::height), flipped ? bottom : top});
    setFrame({across.begin, along.begin, across.length, along.length});
}

void View::addSubview(std::shared_ptr<View> view) {
    view->removeFromSuperview();
    view->superview_ = this;
    subviews_.push_back(view);
    view->setWindow(window_);
    view->setNeedsDisplay();
}

void View::removeFromSuperview() {
    if (superview_ == nullptr)
        return;
    setNeedsDisplay();
    View* const surrounding = std::exchange(superview_, nullptr);
    const auto place = std::ranges::find(surrounding->subviews_, this, &std::shared_ptr<View>::get);
    const std::shared_ptr<View> self = std::move(*place);  // ends, if need be, behind all this
    surrounding->subviews_.erase(place);
    setWindow(nullptr);
}

void View::setWindow(ViewWindow* window) {
    if (window == window_)
        return;
    window_ = window;
    viewDidMoveToWindow();
    for (std::size_t index = 0; index < subviews_.size(); ++index)
        subviews_[index]->setWindow(window);
}

void View::setHidden(bool hidden) {
    if (hidden == hidden_)
        return;
    hidden_ = hidden;
    setNeedsDisplay();
}

void View::setNeedsDisplay() {
    needsDisplay_ = true;
    if (window_ == nullptr)
        return;
    View* root = this;
    while (root->superview_ != nullptr)
        root = root->superview_;
    window_->setNeedsDisplay(*root, *this);
}

bool View::treeNeedsDisplay() const noexcept {
    return needsDisplay_ || std::ranges::any_of(subviews_, [](const auto& view) {
               return view->treeNeedsDisplay();
           });
}

Painting::Origin View::origin() const noexcept {
    return isFlipped() ? Painting::Origin::upperLeft : Painting::Origin::lowerLeft;
}

void View::display(Painting::Context& context) {
    needsDisplay_ = false;
    if (hidden_ || !(frame_.width > 0) || !(frame_.height > 0))
        return;
    draw(context);
    const Rect reached = context.clipBounds();
    for (const std::shared_ptr<View>& view : subviews_) {
        if (!touches(reached, view->frame_))
            continue;  // most of what a small part of a large picture holds
        Painting::Context inside(context, view->frame_, view->origin());
        view->display(inside);
    }
}

void View::draw(Painting::Context&) {}

View* View::hitTest(Point point) {
    if (hidden_ || point.x < 0 || point.y < 0 || point.x >= frame_.width ||
        point.y >= frame_.height)
        return nullptr;
    for (auto view = subviews_.rbegin(); view != subviews_.rend(); ++view) {
        const Rect& frame = (*view)->frame_;
        double y = point.y - frame.y;
        if ((*view)->isFlipped() != isFlipped())
            y = frame.height - y;
        if (View* const hit = (*view)->hitTest({point.x - frame.x, y}))
            return hit;
    }
    return this;
}

Point View::convertToRoot(Point point) const noexcept {
    for (const View* view = this; view->superview_ != nullptr; view = view->superview_) {
        if (view->isFlipped() != view->superview_->isFlipped())
            point.y = view->frame_.height - point.y;
        point = {point.x + view->frame_.x, point.y + view->frame_.y};
    }
    return point;
}

}  // namespace vantor::inline VANTOR_MODULE
