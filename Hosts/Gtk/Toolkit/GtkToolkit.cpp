#include "Hosts/Gtk/Toolkit/GtkToolkit.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include <X11/Xlib.h>
#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>
#include <gtk-layer-shell/gtk-layer-shell.h>
#include <poll.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// What keeps making work for itself leaves room for the rest of the program.
constexpr int kPassesAtOnce = 64;

const char* backendName(DisplaySystem system) noexcept {
    return system == DisplaySystem::wayland ? "wayland" : "x11";
}

/// Without assistive technology at work GTK would start its bus for nothing.
bool isAccessibilityRunning() noexcept {
    if (std::getenv("AT_SPI_BUS_ADDRESS") != nullptr)
        return true;
    std::error_code none;
    return fs::exists(fs::path(g_get_user_runtime_dir()) / "at-spi", none);
}

GdkRectangle whole(const Rect& rect) noexcept {
    return {static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<int>(rect.width),
            static_cast<int>(rect.height)};
}

GdkScreen* screenOf(GdkDisplay* display) noexcept {
    return gdk_display_get_default_screen(display);
}

}  // namespace

GtkToolkit::GtkToolkit() noexcept {
    if (!isAccessibilityRunning())
        g_setenv("NO_AT_BRIDGE", "1", FALSE);
    // Looking for screens to draw three-dimensional things on would load 50 MiB of drivers.
    g_setenv("GDK_GL", "disable", FALSE);
    // The locale is the program's affair: numbers are read and written without one.
    gtk_disable_setlocale();
    gtk_parse_args(nullptr, nullptr);
    // For good: a source that is added outside of `serve` needs no wake-up then.
    if (g_main_context_acquire(g_main_context_default()) == FALSE)
        g_critical("the main loop is somebody else's");
    menus_.setPressElsewhere([this](const GdkEventButton& event) { return pressElsewhere(event); });
}

bool GtkToolkit::open(DisplaySystem system) noexcept {
    gdk_set_allowed_backends(backendName(system));
    display_ = gdk_display_open(nullptr);
    if (display_ == nullptr)
        return false;
    gdk_display_manager_set_default_display(gdk_display_manager_get(), display_);
    if (system == DisplaySystem::x11 || gtk_layer_is_supported()) {
        watchConnection();
        return true;
    }
    gdk_display_close(display_);
    display_ = nullptr;
    return false;
}

/// GDK would end the process there and then when the display ends.
void GtkToolkit::watchConnection() noexcept {
    if (!GDK_IS_X11_DISPLAY(display_)) {
        connection_ = wl_display_get_fd(gdk_wayland_display_get_wl_display(display_));
        return;
    }
    Display* const display = gdk_x11_display_get_xdisplay(display_);
    connection_ = ConnectionNumber(display);
    XSetIOErrorHandler([](Display*) { return 0; });
    // Where this one returns, so does the call that failed, and all others on this display fail.
    XSetIOErrorExitHandler(
        display, [](Display*, void* self) { static_cast<GtkToolkit*>(self)->lose(); }, this);
}

bool GtkToolkit::hasHungUp() const noexcept {
    pollfd polled{.fd = connection_, .events = 0, .revents = 0};
    return poll(&polled, 1, 0) == 1;
}

void GtkToolkit::lose() noexcept {
    isLost_ = true;
    menus_.abandon();
}

bool GtkToolkit::show(const BarOptions& options, BarOwner& owner) {
    options_ = options;
    owner_ = &owner;
    for (const char* const signal : {"monitors-changed", "size-changed"})
        g_signal_connect(screenOf(display_), signal, G_CALLBACK(monitorsChanged), this);
    makeBars();
    return !bars_.empty();
}

void GtkToolkit::hide() noexcept {
    g_signal_handlers_disconnect_by_data(screenOf(display_), this);
    owner_ = nullptr;
    if (isLost_ || hasHungUp()) {
        lose();
        for (const auto& bar : bars_)
            bar->abandon();
    }
    menus_.removeAnchor();  // before its window goes
    bars_.clear();
    if (!isLost_)
        gdk_display_flush(display_);
}

void GtkToolkit::listBars(std::vector<BarPlace>& into) const {
    into.clear();
    for (const auto& bar : bars_)
        into.push_back(bar->place());
}

void GtkToolkit::setItemLength(double length) noexcept {
    length_ = length;
    for (const auto& bar : bars_)
        bar->setItemLength(length);
}

void GtkToolkit::repaintItem(BarID wanted, const Rect& part) noexcept {
    for (const auto& bar : bars_)
        if (bar->place().bar == wanted)
            bar->repaintItem(part);
}

void GtkToolkit::repaintBars() noexcept {
    for (const auto& bar : bars_)
        bar->repaint();
}

MenuWindows& GtkToolkit::menusAt(BarID wanted) noexcept {
    for (const auto& bar : bars_)
        if (bar->place().bar == wanted)
            menus_.setAnchor(bar->widget(), whole(bar->item()),
                             options_.edge == BarEdge::top ? MenuDirection::down
                                                           : MenuDirection::up);
    return menus_;
}

/// The item is pressed while its menu holds the pointer, there or in another bar.
bool GtkToolkit::pressElsewhere(const GdkEventButton& event) noexcept {
    return std::ranges::any_of(bars_, [&](const auto& bar) { return bar->handlePress(event); });
}

/// Before their window goes to which the menus belong.
void GtkToolkit::closeMenusOf(const Bars& bars) noexcept {
    for (const auto& bar : bars)
        if (bar != nullptr && bar->widget() == menus_.anchor())
            menus_.removeAnchor();
}

BarWait GtkToolkit::serve() {
    GMainContext* const context = g_main_context_default();
    for (int pass = 0; pass < kPassesAtOnce && !isLost_; ++pass) {
        // A compositor that has gone is seen here first: GDK would end the process.
        if (hasHungUp())
            lose();
        else if (g_main_context_iteration(context, FALSE) == FALSE)
            break;
    }
    return isLost_ ? BarWait{} : nextWait();
}

BarWait GtkToolkit::nextWait() {
    GMainContext* const context = g_main_context_default();
    gint priority = 0, timeout = -1;
    g_main_context_prepare(context, &priority);
    const auto query = [&] {
        return static_cast<std::size_t>(g_main_context_query(
            context, priority, &timeout, polled_.data(), static_cast<gint>(polled_.size())));
    };
    for (std::size_t count = query(); count != polled_.size(); count = query())
        polled_.resize(count);
    descriptors_.clear();
    for (const GPollFD& polled : polled_)  // its flags are those of poll(2)
        descriptors_.push_back(
            {.fd = polled.fd, .events = static_cast<short>(polled.events), .revents = 0});
    // A Wayland display that somebody prepared to read waits for that reader, which is us: what is
    // asked of it before the next time, such as a window, would wait for ever.
    for (GPollFD& polled : polled_)
        polled.revents = 0;
    g_main_context_check(context, priority, polled_.data(), static_cast<gint>(polled_.size()));
    return {descriptors_, timeout};
}

void GtkToolkit::monitorsChanged(GdkScreen*, gpointer self) noexcept {
    static_cast<GtkToolkit*>(self)->makeBars();
}

/// A monitor that was there before keeps its bar.
void GtkToolkit::makeBars() {
    Bars before = std::exchange(bars_, {});
    Bars bars;
    for (int index = 0; index < gdk_display_get_n_monitors(display_); ++index) {
        GdkMonitor* const monitor = gdk_display_get_monitor(display_, index);
        if (!isWanted(monitor, index))
            continue;
        std::unique_ptr<GtkBar> bar = takeBarOf(monitor, before);
        if (bar == nullptr) {
            bar = std::make_unique<GtkBar>(BarID{++barsMade_}, monitor, options_, *owner_);
            bar->setItemLength(length_);
        }
        bars.push_back(std::move(bar));
    }
    closeMenusOf(before);
    before.clear();
    bars_ = std::move(bars);
    for (const auto& bar : bars_)
        bar->followMonitors();
    owner_->barsChanged();
}

std::unique_ptr<GtkBar> GtkToolkit::takeBarOf(GdkMonitor* monitor, Bars& bars) noexcept {
    for (auto& bar : bars)
        if (bar != nullptr && bar->monitor() == monitor)
            return std::move(bar);
    return nullptr;
}

bool GtkToolkit::isWanted(GdkMonitor* monitor, int index) const {
    const char* const name = gdk_monitor_get_model(monitor);
    return options_.monitor.empty() || options_.monitor == std::to_string(index) ||
           (name != nullptr && options_.monitor == name);
}

}  // namespace vantor

extern "C" __attribute__((visibility("default"))) vantor::BarToolkit* vantorBarToolkit3();

/// Never ended: GTK holds it to the end of the process.
vantor::BarToolkit* vantorBarToolkit3() {
    static auto* const toolkit = new vantor::GtkToolkit;
    return toolkit;
}
