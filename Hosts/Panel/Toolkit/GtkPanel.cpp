#include "Hosts/Panel/Toolkit/GtkPanel.h"

#include <algorithm>
#include <exception>

#include "Hosts/Panel/PanelDirectories.h"

namespace vantor {

GtkPanel& GtkPanel::shared() {
    static auto* const panel = new GtkPanel;
    return *panel;
}

GtkPanel::GtkPanel() {
    menus_.setPressElsewhere([this](const GdkEventButton& event) { return pressElsewhere(event); });
    menus_.setOpenChanged([this](bool isOpen) { menuChanged(isOpen); });
}

GtkWidget* GtkPanel::makePlace(const VantorPanelOptions& options) {
    places_.push_back(std::make_unique<GtkPlace>(BarID{++placesMade_}, options, listener()));
    GtkPlace& place = *places_.back();
    if (session_ == nullptr)
        begin();
    else
        owner_->barsChanged();
    place.setLength(length_);
    return place.widget();
}

GtkPlace::Listener GtkPanel::listener() {
    return {.pressed =
                [this](const GtkPlace& place) {
                    if (owner_ != nullptr)
                        owner_->itemPressed(place.id());
                },
            .changed = [this](const GtkPlace& place) { placeChanged(place); },
            .destroyed = [this](const GtkPlace& place) { placeDestroyed(place); },
            .paint =
                [this](const GtkPlace& place, cairo_t* cairo, Size size) {
                    if (owner_ != nullptr)
                        owner_->paint(cairo, place.id(), size);
                }};
}

/// One item, one ink: that of the panel which changed last.
void GtkPanel::placeChanged(const GtkPlace& place) {
    if (session_ == nullptr)
        return;
    session_->setDark(place.isDark());
    owner_->barsChanged();
}

void GtkPanel::placeDestroyed(const GtkPlace& place) {
    if (menus_.anchor() == place.widget())
        menus_.removeAnchor();
    const auto found = std::ranges::find(places_, &place, &std::unique_ptr<GtkPlace>::get);
    const std::unique_ptr<GtkPlace> ended = std::move(*found);
    places_.erase(found);
    if (owner_ != nullptr)
        owner_->barsChanged();
    if (source_ == nullptr || !source_->isServing())
        return endIfUnused();
    // The call that destroyed the widget is one of the item's own.
    g_idle_add(
        [](gpointer self) noexcept -> gboolean {
            static_cast<GtkPanel*>(self)->endIfUnused();
            return G_SOURCE_REMOVE;
        },
        this);
}

void GtkPanel::begin() {
    try {
        session_ = std::make_unique<PanelSession>(*this, panelDirectories(),
                                                  places_.front()->isDark());
        source_ = std::make_unique<QueueSource>(*session_);
    } catch (const std::exception& error) {
        session_.reset();
        g_warning("vantorbar: %s", error.what());
    }
}

void GtkPanel::endIfUnused() noexcept {
    if (!places_.empty())
        return;
    source_.reset();
    session_.reset();
    length_ = 0;
}

bool GtkPanel::show(const BarOptions&, BarOwner& owner) {
    owner_ = &owner;
    return !places_.empty();
}

void GtkPanel::listBars(std::vector<BarPlace>& into) const {
    into.clear();
    for (const auto& place : places_)
        into.push_back({place->id(), place->scale()});
}

MenuWindows& GtkPanel::menusAt(BarID bar) noexcept {
    for (const auto& place : places_)
        if (place->id() == bar)
            menus_.setAnchor(place->widget(), place->wholeRect(), place->menuDirection());
    return menus_;
}

/// The item is pressed while its menu holds the pointer, there or in another place.
bool GtkPanel::pressElsewhere(const GdkEventButton& event) noexcept {
    return std::ranges::any_of(places_, [&](const auto& place) {
        return place->isUnder(event) && place->handlePress(event);
    });
}

void GtkPanel::menuChanged(bool isOpen) noexcept {
    for (const auto& place : places_)
        if (place->widget() == menus_.anchor())
            place->menuChanged(isOpen);
}

void GtkPanel::setItemLength(double length) noexcept {
    length_ = length;
    for (const auto& place : places_)
        place->setLength(length);
}

void GtkPanel::setMaximumWidth(GtkWidget* widget, double width) noexcept {
    for (const auto& place : places_)
        if (place->widget() == widget)
            place->setMaximumWidth(width);
}

void GtkPanel::repaintItem(BarID bar, const Rect& part) noexcept {
    for (const auto& place : places_)
        if (place->id() == bar)
            place->repaint(part);
}

void GtkPanel::repaintBars() noexcept {
    for (const auto& place : places_)
        place->repaint();
}

}  // namespace vantor
