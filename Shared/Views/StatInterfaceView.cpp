#include "Shared/Views/StatInterfaceView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Painting/Path.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRTranslations.h"
#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kPillInset = 2, kPillRadius = 4;
constexpr double kHeaderGradientHeight = 20;

/// From the upper edge to the lower one, whichever way the view's y grows.
constexpr Painting::Gradient kHighlight{kHighlightUpper, kHighlightLower};

/// In the middle of `rect`, both ways.
void drawTitle(Painting::Context& context, const std::string& title, Rect rect, Painting::Font font,
               const Colour& colour) {
    const Painting::TextAttributes attributes{
        .font = std::move(font), .colour = colour, .alignment = Painting::Alignment::centre};
    const double lineHeight = Painting::sizeOfText(title, attributes).height;
    rect.height -= std::floor(std::max(rect.height - lineHeight, 0.0) / 2);  // y grows upwards
    context.drawText(title, rect, attributes);
}

void fillGradient(Painting::Context& context, const Rect& rect,
                  const Painting::Gradient& gradient) {
    Painting::Path path;
    path.addRect(rect);
    context.fill(path, gradient);
}

void localizeView(View& view, std::string_view table) {
    if (auto* const field = dynamic_cast<StatInterfaceTextField*>(&view))
        field->setStringValue(VTRLocalizedString(field->stringValue(), {}, table));
    if (auto* const header = dynamic_cast<HeaderView*>(&view))
        header->setTitle(VTRLocalizedString(header->title(), {}, table));
    for (const std::shared_ptr<View>& inside : view.subviews())
        localizeView(*inside, table);
}

}  // namespace

void StatInterfaceView::addInnerView() {
    const auto inner = std::make_shared<StatInterfaceView>(bounds());
    inner->setResizing(Resizing::width | Resizing::height);
    inner->setBackgroundDisabled(true);
    addSubview(inner);
}

void StatInterfaceView::updateColors() { updateColorsForView(*this); }

void StatInterfaceView::updateColorsForView(View& view) {
    for (const std::shared_ptr<View>& inside : view.subviews()) {
        if (auto* const container = dynamic_cast<StatInterfaceView*>(inside.get())) {
            container->updateColors();  // which walks on
            continue;
        }
        inside->updateColors();
        updateColorsForView(*inside);
    }
    setNeedsDisplay();
}

void StatInterfaceView::setMenuItemHighlighted(bool highlighted) {
    menuItemHighlighted_ = highlighted;
    for (const std::shared_ptr<View>& inside : subviews())
        inside->setMenuItemHighlighted(highlighted);
}

void StatInterfaceView::localizeWithBundle(std::string_view table) { localizeView(*this, table); }

void StatInterfaceView::draw(Painting::Context& context) {
    if (backgroundDisabled_)
        return;
    context.fill(bounds(), menuBackground());
    if (!(highlightable_ && menuItemHighlighted_) && !customHighlightRect_)
        return;
    Rect pill{kPillInset, 0, frame().width - 2 * kPillInset, frame().height};
    if (customHighlightRect_) {
        pill.y = highlightRect_.y;
        pill.height = highlightRect_.height;
    }
    Painting::Path path;
    path.addRoundedRect(pill, kPillRadius);
    context.fill(path, kHighlight);
}

/// A menu has its ground from its first row, so that it shows the theme between and below rows.
void StatInterfaceView::viewDidMoveToWindow() {
    if (window() == nullptr) {
        backgroundWindow_ = nullptr;
        return;
    }
    if (itemIndex_ != 0 || superview() != nullptr)
        return;
    backgroundWindow_ = window();
    backgroundWindow_->setBackground(menuBackground());
}

void StatInterfaceView::removeLayer() {
    if (ViewWindow* const window = std::exchange(backgroundWindow_, nullptr))
        window->setBackground(std::nullopt);
}

void SpacerView::draw(Painting::Context& context) {
    StatInterfaceView::draw(context);
    context.fill({0, std::floor(frame().height / 2), frame().width, 1},
                 themed(grey(0.901), grey(0.22)));
}

void HeaderView::setTitle(std::string title) {
    title_ = std::move(title);
    setNeedsDisplay();
}

void HeaderView::draw(Painting::Context& context) {
    if (type_ == 2)
        drawOnBlue(context);
    else
        drawOnGround(context);
}

void HeaderView::drawOnGround(Painting::Context& context) const {
    const double width = frame().width;
    context.fill(bounds(), menuBackground());
    const Colour lower = themed(grey(0.952), grey(0.141));
    fillGradient(context, {0, 0, width, kHeaderGradientHeight}, {menuBackground(), lower});
    context.fill({0, 0, width, 1}, themed(grey(0.901), grey(0.133)));
    drawTitle(context, title_, {0, 5, width, 15}, vtrMediumFont(10), kHighlightLower);
}

void HeaderView::drawOnBlue(Painting::Context& context) const {
    fillGradient(context, bounds(), {kHighlightUpper, kHighlightLower});
    drawTitle(context, title_, {0, 0, frame().width, 20}, vtrNormalFont(12), kWhite);
}

}  // namespace vantor::inline VANTOR_MODULE
