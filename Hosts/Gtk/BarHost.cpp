#include "Hosts/Gtk/BarHost.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "Foundation/Colour.h"
#include "Hosts/Menu/MenuSentences.h"
#include "Painting/Context.h"
#include "Shared/MenuExtra.h"
#include "Shared/ProcessContext.h"
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

/// Whole points around those pixels.
Rect pointsOf(const PixelRect& pixels, double scale) noexcept {
    if (pixels.isEmpty())
        return {};
    const double left = std::floor(pixels.x / scale), top = std::floor(pixels.y / scale);
    return {left, top, std::ceil((pixels.x + pixels.width) / scale) - left,
            std::ceil((pixels.y + pixels.height) / scale) - top};
}

}  // namespace

BarHost::BarHost(BarToolkit& toolkit, BarOptions options)
    : toolkit_(toolkit), options_(std::move(options)),
      menus_(ProcessContext::current().ports().mainQueue, [this] { setMenuBar(BarID::none); }) {
    if (!toolkit_.show(options_, *this)) {
        toolkit_.hide();
        throw std::runtime_error(fmt::format("there is no monitor {}", options_.monitor));
    }
}

/// Which closes the menu, or leaves it to a display that is gone.
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
    closeMenu();
    needsDisplay_ = false;
}

void BarHost::display(Sample) {
    needsDisplay_ = false;
    const bool isNowDark = isDark();
    const bool recoloured = std::exchange(shownDark_, isNowDark) != isNowDark;
    listBars();
    fitFaces();
    paintFaces();
    if (std::exchange(shownLength_, length()) != length())
        toolkit_.setItemLength(length());
    showChanges();
    if (recoloured)
        toolkit_.repaintBars();
}

void BarHost::listBars() {
    toolkit_.listBars(places_);
    bars_.clear();
    for (const BarPlace& place : places_)
        bars_.push_back({place, place.bar == menuBar_});
}

/// Those that there are bars for, and no others.
void BarHost::fitFaces() {
    std::erase_if(faces_, [this](const Face& face) {
        return std::ranges::none_of(bars_, [&](const Bar& bar) { return shows(bar, face); });
    });
    for (const Bar& bar : bars_)
        if (faceOf(bar) == nullptr)
            faces_.push_back({bar.menuDown, ItemPicture(bar.place.scale), {}});
    // So that the last paint is the one that knows of the menu.
    std::ranges::partition(faces_, [](const Face& face) { return !face.menuDown; });
}

void BarHost::paintFaces() {
    VTRMenuExtraView* const view = extra_ != nullptr ? extra_->view() : nullptr;
    const Size size{std::ceil(length()), kBarHeight};
    for (Face& face : faces_) {
        menuDown_ = face.menuDown;
        face.changed = face.picture.repaint(size, [&](Painting::Context& context) {
            paintBackdrop(context, size);
            if (view == nullptr)
                return;
            // One of them tells how wide the item is: rounding mustn't make it waver.
            if (&face == &faces_.front())
                view->drawRect(context, {.isBitmap = false, .screens = bars_.size()});
            else
                view->drawSnapshot(context);
        });
    }
    menuDown_ = menuBar_ != BarID::none;
}

void BarHost::showChanges() {
    for (const Bar& bar : bars_) {
        const Face* const face = faceOf(bar);
        const bool isSame = std::ranges::find(shownBars_, bar) != shownBars_.end();
        const Size size = face->picture.shown().size();
        const Rect part =
            isSame ? pointsOf(face->changed, bar.place.scale) : Rect{0, 0, size.width, size.height};
        if (part.width > 0)
            toolkit_.repaintItem(bar.place.bar, part);
    }
    shownBars_ = bars_;
}

bool BarHost::shows(const Bar& bar, const Face& face) noexcept {
    return face.menuDown == bar.menuDown && face.picture.scale() == bar.place.scale;
}

const BarHost::Face* BarHost::faceOf(const Bar& bar) const noexcept {
    const auto found =
        std::ranges::find_if(faces_, [&bar](const Face& face) { return shows(bar, face); });
    return found == faces_.end() ? nullptr : &*found;
}

void BarHost::paint(_cairo* cairo, BarID bar, Size size) noexcept {
    const auto shown = std::ranges::find(shownBars_, bar, [](const Bar& b) { return b.place.bar; });
    const Face* const face = shown != shownBars_.end() ? faceOf(*shown) : nullptr;
    Painting::Context context(cairo, size, face != nullptr ? face->picture.scale() : 1,
                              Painting::Origin::lowerLeft);
    paintBackdrop(context, size);
    if (face == nullptr)
        return;
    const Rect frame = itemFrame(size, options_.side, shownLength_, options_.margin);
    context.clip(frame);
    context.drawImage(face->picture.shown(), Point{frame.x, 0});
}

void BarHost::paintBackdrop(Painting::Context& context, Size size) const noexcept {
    if (options_.backdrop == BarBackdrop::own)
        context.fill(Rect{0, 0, size.width, size.height}, shownDark_ ? kDarkBar : kLightBar);
}

std::string BarHost::itemName() noexcept {
    return extra_ != nullptr ? std::string(extra_->AXDescription()) : std::string();
}

std::string BarHost::itemSentence() noexcept { return vantor::itemSentence(); }

void BarHost::itemPressed(BarID bar) noexcept {
    const bool closes = menuBar_ == bar;
    closeMenu();
    if (!closes)
        openMenu(bar);
}

void BarHost::openMenu(BarID bar) {
    VTRMenu* const menu = extra_ != nullptr ? extra_->menu() : nullptr;
    if (menu != nullptr && menus_.open(*menu, toolkit_.menusAt(bar)))
        setMenuBar(bar);
}

void BarHost::closeMenu() {
    menus_.close();
    setMenuBar(BarID::none);
}

void BarHost::setMenuBar(BarID bar) {
    menuBar_ = bar;
    menuDown_ = bar != BarID::none;
    setNeedsDisplay();
}

void BarHost::barsChanged() noexcept {
    toolkit_.listBars(places_);
    if (menuBar_ != BarID::none &&
        std::ranges::find(places_, menuBar_, &BarPlace::bar) == places_.end())
        closeMenu();
    setNeedsDisplay();
}

}  // namespace vantor
