#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "Hosts/Gtk/BarToolkit.h"
#include "Hosts/Gtk/Menus/GtkDescribedWindow.h"
#include "Hosts/Gtk/Menus/GtkOwned.h"

namespace vantor {

/// One bar on one monitor: a window at its edge, with the room that it needs kept free.
class GtkBar final : private WindowDescriber {
public:
    /// `options` and `owner` outlive the bar.
    GtkBar(BarID id, GdkMonitor* monitor, const BarOptions& options, BarOwner& owner);
    GtkBar(const GtkBar&) = delete;
    GtkBar& operator=(const GtkBar&) = delete;

    GdkMonitor* monitor() const noexcept { return monitor_.get(); }
    BarPlace place() const noexcept;
    /// After any monitor has come, gone or changed.
    void followMonitors() noexcept;

    GtkWidget* widget() const noexcept { return window_.get(); }
    /// Where the item is, in the bar's points.
    Rect item() const noexcept { return itemFrame(size(), options_.side, length_); }

    void setItemLength(double length) noexcept;
    void repaintItem(const Rect& part) noexcept;
    void repaint() noexcept;
    /// Whether the press is one on the item; its owner has heard of it then.
    bool handlePress(const GdkEventButton& event) noexcept;
    /// Leaves the window to a display that is there no more, and can't be asked to end it.
    void abandon() noexcept { static_cast<void>(window_.release()); }

private:
    struct Unreference {
        void operator()(GdkMonitor* monitor) const noexcept { g_object_unref(monitor); }
    };

    std::size_t describedParts() noexcept override { return 1; }
    DescribedPart describedPart(std::size_t index) noexcept override;
    void pressPart(std::size_t) noexcept override { owner_.itemPressed(id_); }
    static gboolean drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept;
    static gboolean pressed(GtkWidget*, GdkEventButton* event, gpointer self) noexcept;
    static gboolean askedToClose(GtkWidget*, GdkEvent*, gpointer) noexcept;
    static void scaleChanged(GtkWidget*, GParamSpec*, gpointer self) noexcept;

    void placeOnLayer() noexcept;
    void makeDock() noexcept;
    void placeDock() noexcept;
    void repaintFrame(const Rect& frame) noexcept;
    void reserveSpace(const Rect& monitor) noexcept;
    bool isDock() const noexcept;
    Size size() const noexcept;

    const BarID id_;
    const BarOptions& options_;
    BarOwner& owner_;
    const std::unique_ptr<GdkMonitor, Unreference> monitor_;
    OwnedWindow window_;
    double length_ = 0;
};

}  // namespace vantor
