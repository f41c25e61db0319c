#pragma once

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/ItemPreview.h"

namespace vantor {

/// Shows the item as it comes out on a light bar and on a dark one, below each other, at the
/// scale of the screen. While it is shown, time passes in the item.
class PreviewStrip {
public:
    /// The preview outlives it.
    explicit PreviewStrip(ItemPreview& preview);
    ~PreviewStrip();
    PreviewStrip(const PreviewStrip&) = delete;
    PreviewStrip& operator=(const PreviewStrip&) = delete;

    /// Owned by the container that it is put into.
    GtkWidget* widget() const noexcept { return widget_; }
    void repaint() noexcept;

private:
    GtkWidget* addBar(BarShade shade);
    static gboolean draw(GtkWidget* bar, cairo_t* cairo, gpointer self) noexcept;
    static gboolean secondPassed(gpointer self) noexcept;
    void start() noexcept;
    void stop() noexcept;

    ItemPreview& preview_;
    GtkWidget *widget_, *bars_[2];
    guint clock_ = 0;
};

/// A picture of one mode of the item, over a piece of a bar as light or dark as the window.
GtkWidget* newModePicture(ItemPreview& preview, std::int64_t mode);

}  // namespace vantor
