#include "Hosts/Gtk/Menus/GtkMenus.h"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

#include <gdk/gdkwayland.h>
#include <gtk-layer-shell/gtk-layer-shell.h>

#include "Hosts/Gtk/Menus/GtkMenuKeys.h"
#include "Hosts/Gtk/Menus/GtkPointer.h"

namespace vantor {
namespace {

constexpr GdkAnchorHints hints(unsigned one, unsigned other) noexcept {
    return static_cast<GdkAnchorHints>(one | other);
}

GdkRectangle whole(const Rect& rect) noexcept {
    const double top = std::floor(rect.y);
    return {static_cast<int>(std::floor(rect.x)), static_cast<int>(top),
            static_cast<int>(std::ceil(rect.width)),
            static_cast<int>(std::ceil(rect.y + rect.height - top))};
}

/// The window that tells whose layer it is, or which other one a menu belongs to.
GtkWindow* toplevelOf(GtkWidget* widget) noexcept {
    GtkWidget* const toplevel = gtk_widget_get_toplevel(widget);
    return GTK_IS_WINDOW(toplevel) ? GTK_WINDOW(toplevel) : nullptr;
}

GdkSeat* seatOf(GtkWidget* widget) noexcept {
    return gdk_display_get_default_seat(gtk_widget_get_display(widget));
}

}  // namespace

void GtkMenus::setAnchor(GtkWidget* widget, const GdkRectangle& rect,
                         MenuDirection direction) noexcept {
    anchor_ = widget;
    anchorRect_ = rect;
    direction_ = direction;
}

void GtkMenus::removeAnchor() noexcept {
    if (isOpen() && owner_ != nullptr)
        owner_->dismissed();
    closeAll();
    anchor_ = nullptr;
}

void GtkMenus::abandon() noexcept {
    std::ranges::move(windows_, std::back_inserter(abandoned_));
    windows_.clear();
    holdsKeyboard_ = false;
    anchor_ = nullptr;
}

/// The first window has no room where its widget is.
double GtkMenus::mostHeight(MenuWindowID parent) const noexcept {
    if (anchor_ == nullptr)
        return 0;
    GdkMonitor* const monitor = gdk_display_get_monitor_at_window(gtk_widget_get_display(anchor_),
                                                                  gtk_widget_get_window(anchor_));
    GdkRectangle all, free;
    gdk_monitor_get_geometry(monitor, &all);
    gdk_monitor_get_workarea(monitor, &free);
    const bool isBeside = parent != MenuWindowID::none || direction_ == MenuDirection::left ||
                          direction_ == MenuDirection::right;
    return isBeside ? free.height : std::min(free.height, all.height - anchorRect_.height);
}

MenuPlace GtkMenus::anchorPlace() const noexcept {
    MenuPlace place{.beside = gtk_widget_get_window(anchor_),
                    .owner = toplevelOf(anchor_),
                    .rect = anchorRect_};
    switch (direction_) {
    case MenuDirection::down:
        place.corner = GDK_GRAVITY_SOUTH_WEST;
        place.ownCorner = GDK_GRAVITY_NORTH_WEST;
        break;
    case MenuDirection::up:
        place.corner = GDK_GRAVITY_NORTH_WEST;
        place.ownCorner = GDK_GRAVITY_SOUTH_WEST;
        break;
    case MenuDirection::right:
        place.corner = GDK_GRAVITY_NORTH_EAST;
        place.ownCorner = GDK_GRAVITY_NORTH_WEST;
        break;
    case MenuDirection::left:
        place.corner = GDK_GRAVITY_NORTH_WEST;
        place.ownCorner = GDK_GRAVITY_NORTH_EAST;
        break;
    }
    const bool isVertical = direction_ == MenuDirection::down || direction_ == MenuDirection::up;
    place.hints = isVertical ? hints(GDK_ANCHOR_FLIP_Y, GDK_ANCHOR_SLIDE_X)
                             : hints(GDK_ANCHOR_FLIP_X, GDK_ANCHOR_SLIDE_Y);
    return place;
}

MenuWindowID GtkMenus::open(Size size) noexcept {
    closeAll();
    if (anchor_ == nullptr || gtk_widget_get_window(anchor_) == nullptr)
        return MenuWindowID::none;
    const MenuWindowID id{++windowsMade_};
    windows_.push_back(std::make_unique<GtkMenuWindow>(id, anchorPlace(), size, windowOwner()));
    if (grab(*windows_.back()))
        return id;
    closeAll();
    return MenuWindowID::none;
}

MenuWindowID GtkMenus::openBeside(MenuWindowID parent, const Rect& row, Size size) noexcept {
    GtkMenuWindow* const beside = find(parent);
    if (beside == nullptr || beside != windows_.back().get())
        return MenuWindowID::none;
    const MenuPlace place{.beside = beside->window(),
                          .owner = GTK_WINDOW(beside->widget()),
                          .rect = whole(row),
                          .corner = GDK_GRAVITY_NORTH_EAST,
                          .ownCorner = GDK_GRAVITY_NORTH_WEST,
                          .hints = hints(GDK_ANCHOR_FLIP_X, GDK_ANCHOR_SLIDE_Y)};
    const MenuWindowID id{++windowsMade_};
    windows_.push_back(std::make_unique<GtkMenuWindow>(id, place, size, windowOwner()));
    windows_.back()->show();
    return id;
}

/// The window is shown by the grab: on X11 it must be there before, on Wayland after it.
bool GtkMenus::grab(GtkMenuWindow& window) noexcept {
    holdKeyboard(true);
    const auto show = [](GdkSeat*, GdkWindow*, gpointer self) {
        static_cast<GtkMenuWindow*>(self)->show();
    };
    const std::unique_ptr<GdkEvent, void (*)(GdkEvent*)> event(
        gtk_get_current_event(), [](GdkEvent* old) { gdk_event_free(old); });
    const bool grabbed =
        gdk_seat_grab(seatOf(window.widget()), window.window(), GDK_SEAT_CAPABILITY_ALL, TRUE,
                      nullptr, event.get(), show, &window) == GDK_GRAB_SUCCESS;
    if (grabbed)
        gtk_grab_add(window.widget());  // what comes for others of our windows, too
    if (grabbed)
        tellOpen(true);
    return grabbed;
}

/// Keys never reach the popups of a layer: its own window takes them.
void GtkMenus::holdKeyboard(bool holds) noexcept {
    GtkWindow* const toplevel = anchor_ != nullptr ? toplevelOf(anchor_) : nullptr;
    if (holds == holdsKeyboard_ || toplevel == nullptr ||
        gtk_layer_is_layer_window(toplevel) == FALSE)
        return;
    if (holds)
        keyboardMode_ = gtk_layer_get_keyboard_mode(toplevel);
    gtk_layer_set_keyboard_mode(toplevel,
                                holds ? GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE
                                      : static_cast<GtkLayerShellKeyboardMode>(keyboardMode_));
    holdsKeyboard_ = holds;
    // At once: after a popup has the pointer, the keyboard goes nowhere else any more.
    wl_surface_commit(
        gdk_wayland_window_get_wl_surface(gtk_widget_get_window(GTK_WIDGET(toplevel))));
}

void GtkMenus::release() noexcept {
    GtkWidget* const first = windows_.front()->widget();
    gtk_grab_remove(first);
    gdk_seat_ungrab(seatOf(first));
    holdKeyboard(false);
    tellOpen(false);
}

void GtkMenus::tellOpen(bool isOpen) noexcept {
    if (std::exchange(toldOpen_, isOpen) != isOpen && openChanged_)
        openChanged_(isOpen);
}

void GtkMenus::closeAll() noexcept {
    if (!windows_.empty())
        close(windows_.front()->id());
}

/// From the last one on, as compositors want it. Nobody hears of windows that we end.
void GtkMenus::close(MenuWindowID window) noexcept {
    if (find(window) == nullptr)
        return;
    if (windows_.front()->id() == window)
        release();
    isClosing_ = true;
    for (bool isClosed = false; !isClosed && !windows_.empty();) {
        const auto closing = std::move(windows_.back());
        windows_.pop_back();
        isClosed = closing->id() == window;
    }
    isClosing_ = false;
}

GtkMenuWindow* GtkMenus::find(MenuWindowID window) const noexcept {
    const auto found = std::ranges::find(windows_, window, [](auto& each) { return each->id(); });
    return found == windows_.end() ? nullptr : found->get();
}

void GtkMenus::resize(MenuWindowID window, Size size) noexcept {
    if (GtkMenuWindow* const found = find(window))
        found->resize(size);
}

void GtkMenus::repaint(MenuWindowID window, const Rect& part) noexcept {
    if (GtkMenuWindow* const found = find(window))
        found->repaint(part);
}

void GtkMenus::rowHighlighted(MenuWindowID window, std::size_t index) noexcept {
    if (GtkMenuWindow* const found = find(window))
        found->tellHighlight(index);
}

void GtkMenus::paintWindow(const GtkMenuWindow& window, cairo_t* cairo,
                           std::span<const Rect> parts) noexcept {
    if (owner_ != nullptr)
        owner_->paintMenu(cairo, window.id(), parts, window.look());
}

void GtkMenus::windowMoved(const GtkMenuWindow& window, const Rect& inParent) noexcept {
    if (owner_ != nullptr)
        owner_->windowPlaced(window.id(), inParent);
}

/// The grab brings events of all the program's windows here.
bool GtkMenus::handle(GdkEvent* event) noexcept {
    if (owner_ == nullptr || windows_.empty() || isClosing_)
        return false;
    Point point;
    switch (event->type) {
    case GDK_MOTION_NOTIFY: {
        const GtkMenuWindow* const window = windowAt(event, point);
        owner_->pointerMoved(window != nullptr ? window->id() : MenuWindowID::none, point);
        return true;
    }
    case GDK_ENTER_NOTIFY:
    case GDK_LEAVE_NOTIFY:
        crossed(event->crossing);
        return true;
    case GDK_BUTTON_PRESS:
        pressed(event->button);
        return true;
    case GDK_BUTTON_RELEASE: {
        const GtkMenuWindow* const window = windowAt(event, point);
        if (event->button.button == GDK_BUTTON_PRIMARY)
            owner_->pointerReleased(window != nullptr ? window->id() : MenuWindowID::none, point);
        return true;
    }
    case GDK_SCROLL:
        turned(event->scroll);
        return true;
    case GDK_KEY_PRESS:
        return typed(event->key);
    case GDK_GRAB_BROKEN:  // by a grab of our own, when we aren't its window any more
        if (event->grab_broken.grab_window == nullptr)
            owner_->dismissed();
        return true;
    case GDK_UNMAP:
        owner_->dismissed();
        return true;
    default:
        return false;
    }
}

/// The window that the pointer is really in, and where. Under a grab events name another one.
const GtkMenuWindow* GtkMenus::windowAt(const GdkEvent* event, Point& point) const noexcept {
    for (const auto& window : windows_ | std::views::reverse)  // the last one is the uppermost
        if (const auto place = pointerIn(window->window(), event);
            place && isInside(*place, window->size())) {
            point = *place;
            return window.get();
        }
    return nullptr;
}

void GtkMenus::pressed(GdkEventButton& event) noexcept {
    Point point;
    if (const auto* const window = windowAt(reinterpret_cast<GdkEvent*>(&event), point)) {
        if (event.button == GDK_BUTTON_PRIMARY)
            owner_->pointerPressed(window->id(), point);
        return;
    }
    if (!pressElsewhere_ || !pressElsewhere_(event))
        owner_->dismissed();
}

/// The first sign of a pointer may be that it enters. A grab's own crossings are none.
void GtkMenus::crossed(const GdkEventCrossing& event) noexcept {
    if (event.mode != GDK_CROSSING_NORMAL)
        return;
    Point point;
    const auto* const window = event.type == GDK_ENTER_NOTIFY
                                   ? windowAt(reinterpret_cast<const GdkEvent*>(&event), point)
                                   : nullptr;
    owner_->pointerMoved(window != nullptr ? window->id() : MenuWindowID::none, point);
}

void GtkMenus::turned(const GdkEventScroll& event) noexcept {
    Point point;
    const auto* const window = windowAt(reinterpret_cast<const GdkEvent*>(&event), point);
    double notches = 0;
    if (event.direction == GDK_SCROLL_UP)
        notches = 1;
    else if (event.direction == GDK_SCROLL_DOWN)
        notches = -1;
    else if (event.direction == GDK_SCROLL_SMOOTH)
        notches = -event.delta_y;
    if (window != nullptr && notches != 0)
        owner_->wheelTurned(window->id(), notches);
}

bool GtkMenus::typed(const GdkEventKey& event) noexcept {
    if (const auto key = menuKeyOf(event)) {
        owner_->keyPressed(*key);
        return true;
    }
    const std::string text = textOf(event);
    if (!text.empty())
        owner_->textTyped(text);
    return !text.empty();
}

}  // namespace vantor
