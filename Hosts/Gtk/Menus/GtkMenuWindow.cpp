#include "Hosts/Gtk/Menus/GtkMenuWindow.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include <gdk/gdkx.h>

namespace vantor {
namespace {

constexpr double kCornerRadius = 6;

constexpr int kEvents = GDK_POINTER_MOTION_MASK | GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                        GDK_ENTER_NOTIFY_MASK | GDK_LEAVE_NOTIFY_MASK | GDK_KEY_PRESS_MASK |
                        GDK_SCROLL_MASK | GDK_SMOOTH_SCROLL_MASK | GDK_STRUCTURE_MASK;

int whole(double points) noexcept { return static_cast<int>(std::ceil(points)); }

Rect rectOf(const GdkRectangle& rect) noexcept {
    return {static_cast<double>(rect.x), static_cast<double>(rect.y),
            static_cast<double>(rect.width), static_cast<double>(rect.height)};
}

AtkRole roleOf(MenuRowDescription::Role role) noexcept {
    switch (role) {
    case MenuRowDescription::Role::head:
        return ATK_ROLE_HEADING;
    case MenuRowDescription::Role::menu:
        return ATK_ROLE_MENU;
    case MenuRowDescription::Role::item:
        return ATK_ROLE_MENU_ITEM;
    case MenuRowDescription::Role::text:
        break;
    }
    return ATK_ROLE_LABEL;
}

/// Whole points around what is to be painted; all of it where cairo can't tell.
void readParts(cairo_t* cairo, std::vector<Rect>& into) {
    into.clear();
    const std::unique_ptr<cairo_rectangle_list_t, void (*)(cairo_rectangle_list_t*)> list(
        cairo_copy_clip_rectangle_list(cairo), cairo_rectangle_list_destroy);
    if (list->status == CAIRO_STATUS_SUCCESS) {
        for (int index = 0; index < list->num_rectangles; ++index) {
            const cairo_rectangle_t& part = list->rectangles[index];
            into.push_back({part.x, part.y, part.width, part.height});
        }
        return;
    }
    double left = 0, top = 0, right = 0, bottom = 0;
    cairo_clip_extents(cairo, &left, &top, &right, &bottom);
    into.push_back({left, top, right - left, bottom - top});
}

}  // namespace

GtkMenuWindow::GtkMenuWindow(MenuWindowID id, const MenuPlace& place, Size size,
                             GtkMenuWindowOwner& owner)
    : id_(id), place_(place), size_(size), owner_(owner),
      window_(newDescribedWindow(GTK_WINDOW_POPUP, *this)) {
    GtkWidget* const widget = window_.get();
    GtkWindow* const window = GTK_WINDOW(widget);
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DROPDOWN_MENU);
    gtk_window_set_resizable(window, FALSE);
    gtk_window_set_transient_for(window, place_.owner);
    gtk_widget_set_app_paintable(widget, TRUE);
    gtk_widget_add_events(widget, kEvents);
    gtk_widget_set_size_request(widget, whole(size.width), whole(size.height));
    g_signal_connect(widget, "draw", G_CALLBACK(drawn), this);
    g_signal_connect(widget, "event", G_CALLBACK(happened), this);
    makeTranslucent();
    gtk_widget_realize(widget);
    g_signal_connect(this->window(), "moved-to-rect", G_CALLBACK(moved), this);
    if (GDK_IS_X11_WINDOW(this->window()))
        gdk_x11_window_set_frame_sync_enabled(this->window(), FALSE);
    this->place();
}

/// Where somebody composites, what is outside of the corners shows what is below.
void GtkMenuWindow::makeTranslucent() noexcept {
    GdkScreen* const screen = gtk_widget_get_screen(window_.get());
    GdkVisual* const visual = gdk_screen_get_rgba_visual(screen);
    isTranslucent_ = visual != nullptr && gdk_screen_is_composited(screen) != FALSE;
    if (isTranslucent_)
        gtk_widget_set_visual(window_.get(), visual);
}

MenuLook GtkMenuWindow::look() const noexcept {
    return {static_cast<double>(gtk_widget_get_scale_factor(window_.get())),
            isTranslucent_ ? kCornerRadius : 0};
}

/// Clips to the window's shape where something of the corners is painted.
void GtkMenuWindow::cutCorners(cairo_t* cairo) const noexcept {
    const double right = size_.width - kCornerRadius, low = size_.height - kCornerRadius;
    const bool touches = std::ranges::any_of(parts_, [&](const Rect& part) {
        return (part.x < kCornerRadius || part.x + part.width > right) &&
               (part.y < kCornerRadius || part.y + part.height > low);
    });
    if (!isTranslucent_ || !touches)
        return;
    cairo_save(cairo);
    cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
    cairo_paint(cairo);
    cairo_restore(cairo);
    constexpr double kQuarter = std::numbers::pi / 2;
    cairo_new_path(cairo);
    cairo_arc(cairo, right, kCornerRadius, kCornerRadius, -kQuarter, 0);
    cairo_arc(cairo, right, low, kCornerRadius, 0, kQuarter);
    cairo_arc(cairo, kCornerRadius, low, kCornerRadius, kQuarter, 2 * kQuarter);
    cairo_arc(cairo, kCornerRadius, kCornerRadius, kCornerRadius, 2 * kQuarter, 3 * kQuarter);
    cairo_close_path(cairo);
    cairo_clip(cairo);
}

void GtkMenuWindow::place() noexcept {
    gdk_window_set_transient_for(window(), place_.beside);
    gdk_window_move_to_rect(window(), &place_.rect, place_.corner, place_.ownCorner, place_.hints,
                            0, 0);
}

void GtkMenuWindow::resize(Size size) noexcept {
    size_ = size;
    gtk_widget_set_size_request(window_.get(), whole(size.width), whole(size.height));
    gtk_window_resize(GTK_WINDOW(window_.get()), whole(size.width), whole(size.height));
}

void GtkMenuWindow::repaint(const Rect& part) noexcept {
    const double left = std::floor(part.x), top = std::floor(part.y);
    gtk_widget_queue_draw_area(window_.get(), static_cast<int>(left), static_cast<int>(top),
                               whole(part.x + part.width - left),
                               whole(part.y + part.height - top));
}

std::size_t GtkMenuWindow::describedParts() noexcept {
    MenuWindowsOwner* const describer = owner_.describer();
    return describer != nullptr ? describer->describedRows(id_) : 0;
}

DescribedPart GtkMenuWindow::describedPart(std::size_t index) noexcept {
    MenuWindowsOwner* const describer = owner_.describer();
    if (describer == nullptr)
        return {};
    const MenuRowDescription row = describer->describedRow(id_, index);
    const Rect& place = row.place;
    const bool isFiller = row.role == MenuRowDescription::Role::text && row.sentence.empty();
    return {.role = isFiller ? ATK_ROLE_FILLER : roleOf(row.role),
            .name = row.sentence,
            .description = {},
            .place = {static_cast<int>(place.x), static_cast<int>(place.y), whole(place.width),
                      whole(place.height)},
            .isEnabled = row.role == MenuRowDescription::Role::item ||
                         row.role == MenuRowDescription::Role::menu,
            .isFocused = describer->isRowHighlighted(id_, index)};
}

void GtkMenuWindow::pressPart(std::size_t index) noexcept {
    if (MenuWindowsOwner* const describer = owner_.describer())
        describer->rowPressed(id_, index);
}

gboolean GtkMenuWindow::drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept {
    auto* const window = static_cast<GtkMenuWindow*>(self);
    readParts(cairo, window->parts_);
    window->cutCorners(cairo);
    window->owner_.paintWindow(*window, cairo, window->parts_);
    return TRUE;
}

gboolean GtkMenuWindow::happened(GtkWidget*, GdkEvent* event, gpointer self) noexcept {
    return static_cast<GtkMenuWindow*>(self)->owner_.handle(event) ? TRUE : FALSE;
}

void GtkMenuWindow::moved(GdkWindow*, const GdkRectangle*, const GdkRectangle* final, gboolean,
                          gboolean, gpointer self) noexcept {
    const auto* const window = static_cast<GtkMenuWindow*>(self);
    if (final != nullptr)
        window->owner_.windowMoved(*window, rectOf(*final));
}

}  // namespace vantor
