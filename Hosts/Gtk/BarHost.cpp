#include "Hosts/Gtk/BarHost.h"

#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "Foundation/Colour.h"
#include "Painting/Context.h"
#include "Shared/MenuExtra.h"
#include "Shared/VTRPreferences.h"
#include "Shared/Views/VTRMenuExtraView.h"

namespace vantor {
namespace {

constexpr Colour kLightBar{0.93, 0.93, 0.93, 1}, kDarkBar{0.14, 0.14, 0.15, 1};
constexpr Colour kHighlight{0.18, 0.45, 0.92, 1}, kLightHighlight{0.85, 0.85, 0.87, 1};

/// As the item's own colours are chosen, so that it can always be read.
bool isDark() noexcept {
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    return preferences != nullptr && preferences->isMenubarDark();
}

/// The item is black on a highlight of high contrast on a dark bar, and white on all others.
Colour highlight() noexcept {
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    const bool light = preferences != nullptr && preferences->increaseContrast() && isDark();
    return light ? kLightHighlight : kHighlight;
}

}  // namespace

BarHost::BarHost(BarToolkit& toolkit, BarOptions options)
    : toolkit_(toolkit), options_(std::move(options)) {
    if (!toolkit_.show(options_, *this)) {
        toolkit_.hide();
        throw std::runtime_error(fmt::format("there is no monitor {}", options_.monitor));
    }
}

BarHost::~BarHost() { toolkit_.hide(); }

void BarHost::setLength(double length) {
    ItemHost::setLength(length);
    setNeedsDisplay();
}

void BarHost::setViewFrameSize(Size size) {
    ItemHost::setViewFrameSize(size);
    setNeedsDisplay();
}

void BarHost::setNeedsDisplay() {
    ItemHost::setNeedsDisplay();
    needsDisplay_ = true;
}

void BarHost::drawMenuBackground(Painting::Context& context) {
    context.fill(context.clipBounds(), highlight());
}

void BarHost::willUnload() {
    ItemHost::willUnload();
    needsDisplay_ = false;
}

void BarHost::display(Sample) {
    needsDisplay_ = false;
    if (std::exchange(shownLength_, length()) != length())
        toolkit_.setItemLength(length());
    if (std::exchange(shownDark_, isDark()) != isDark())
        toolkit_.repaintBars();
    else
        toolkit_.repaintItem();
}

void BarHost::paint(_cairo* cairo, Size bar, double scale) noexcept {
    Painting::Context context(cairo, bar, scale, Painting::Origin::lowerLeft);
    context.fill(Rect{0, 0, bar.width, bar.height}, shownDark_ ? kDarkBar : kLightBar);
    VTRMenuExtraView* const view = extra_ != nullptr ? extra_->view() : nullptr;
    if (view == nullptr)
        return;
    Painting::Context item(context, itemFrame(bar, options_.side, shownLength_),
                           Painting::Origin::lowerLeft);
    view->drawRect(item, {.isBitmap = false, .screens = toolkit_.bars()});
}

void BarHost::itemPressed() noexcept {
    menuDown_ = !menuDown_;
    setNeedsDisplay();
}

}  // namespace vantor
