#include "Programs/vantorbar-preferences/Window/PreviewStrip.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "Painting/Context.h"
#include "Painting/Path.h"
#include "Programs/vantorbar-preferences/Window/Widgets.h"

namespace vantor {
namespace {

constexpr double kItemHeight = 22;
constexpr int kBarHeight = 34, kPictureWidth = 64, kPictureHeight = 30;
constexpr const char* kPreview = "vantor-preview";
constexpr const char* kMode = "vantor-mode";

struct Canvas {
    explicit Canvas(GtkWidget* of)
        : widget(of), width(gtk_widget_get_allocated_width(of)),
          height(gtk_widget_get_allocated_height(of)), scale(gtk_widget_get_scale_factor(of)) {}

    /// The item in the middle of a piece of a bar, and what has no room cut off at its end.
    void paint(cairo_t* cairo, BarShade shade, const Painting::ImageSurface& item) const {
        constexpr double kMargin = 6, kRadius = 6;
        const Rect all{0, 0, static_cast<double>(width), static_cast<double>(height)};
        Painting::Context context(cairo, {all.width, all.height}, scale,
                                  Painting::Origin::upperLeft);
        Painting::Path bar;
        bar.addRoundedRect(all, kRadius);
        context.fill(bar, barColour(shade));
        context.clip(Rect{kMargin, 0, width - 2 * kMargin, static_cast<double>(height)});
        const double left = std::max(kMargin, std::floor((width - item.size().width) / 2));
        context.drawImage(item, Point{left, std::floor((height - kItemHeight) / 2)});
    }

    GtkWidget* widget;
    int width, height, scale;
};

bool isWindowDark(GtkWidget* widget) noexcept {
    GdkRGBA ink;
    gtk_style_context_get_color(gtk_widget_get_style_context(widget),
                                gtk_widget_get_state_flags(widget), &ink);
    return ink.red + ink.green + ink.blue > 1.5;
}

gboolean drawMode(GtkWidget* widget, cairo_t* cairo, gpointer) noexcept {
    auto* const preview = static_cast<ItemPreview*>(g_object_get_data(G_OBJECT(widget), kPreview));
    const auto mode = GPOINTER_TO_INT(g_object_get_data(G_OBJECT(widget), kMode));
    const Canvas canvas(widget);
    const BarShade shade = isWindowDark(widget) ? BarShade::dark : BarShade::light;
    canvas.paint(cairo, shade, preview->pictureOf(mode, shade, canvas.scale));
    return TRUE;
}

}  // namespace

PreviewStrip::PreviewStrip(ItemPreview& preview)
    : preview_(preview),
      widget_(newColumn(6)), bars_{addBar(BarShade::light), addBar(BarShade::dark)} {
    GtkWidget* const words = newText(text("Your settings, with figures made up"), "help");
    gtk_label_set_xalign(GTK_LABEL(words), 0.5);
    gtk_container_add(GTK_CONTAINER(widget_), words);
    g_object_ref_sink(widget_);
    g_signal_connect_swapped(widget_, "map", G_CALLBACK(+[](PreviewStrip* self) { self->start(); }),
                             this);
    g_signal_connect_swapped(widget_, "unmap",
                             G_CALLBACK(+[](PreviewStrip* self) { self->stop(); }), this);
}

PreviewStrip::~PreviewStrip() {
    stop();
    g_signal_handlers_disconnect_by_data(widget_, this);
    for (GtkWidget* const bar : bars_)
        g_signal_handlers_disconnect_by_data(bar, this);
    g_object_unref(widget_);
}

GtkWidget* PreviewStrip::addBar(BarShade shade) {
    GtkWidget* const bar = gtk_drawing_area_new();
    gtk_widget_set_size_request(bar, -1, kBarHeight);
    setSpokenName(bar, shade == BarShade::dark ? text("The item on a dark bar")
                                               : text("The item on a light bar"));
    g_signal_connect(bar, "draw", G_CALLBACK(draw), this);
    gtk_container_add(GTK_CONTAINER(widget_), bar);
    return bar;
}

gboolean PreviewStrip::draw(GtkWidget* bar, cairo_t* cairo, gpointer self) noexcept {
    auto* const strip = static_cast<PreviewStrip*>(self);
    const Canvas canvas(bar);
    const BarShade shade = bar == strip->bars_[1] ? BarShade::dark : BarShade::light;
    canvas.paint(cairo, shade, strip->preview_.picture(shade, canvas.scale));
    return TRUE;
}

void PreviewStrip::repaint() noexcept {
    for (GtkWidget* const bar : bars_)
        gtk_widget_queue_draw(bar);
}

gboolean PreviewStrip::secondPassed(gpointer self) noexcept {
    auto* const strip = static_cast<PreviewStrip*>(self);
    strip->preview_.advance();
    strip->repaint();
    return G_SOURCE_CONTINUE;
}

void PreviewStrip::start() noexcept {
    if (clock_ == 0)
        clock_ = g_timeout_add_seconds(1, secondPassed, this);
}

void PreviewStrip::stop() noexcept {
    if (clock_ != 0)
        g_source_remove(clock_);
    clock_ = 0;
}

GtkWidget* newModePicture(ItemPreview& preview, std::int64_t mode) {
    GtkWidget* const picture = gtk_drawing_area_new();
    gtk_widget_set_size_request(picture, kPictureWidth, kPictureHeight);
    gtk_widget_set_valign(picture, GTK_ALIGN_CENTER);
    g_object_set_data(G_OBJECT(picture), kPreview, &preview);
    g_object_set_data(G_OBJECT(picture), kMode, GINT_TO_POINTER(static_cast<int>(mode)));
    g_signal_connect(picture, "draw", G_CALLBACK(drawMode), nullptr);
    return picture;
}

}  // namespace vantor
