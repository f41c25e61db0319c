#include "Programs/vantorbar-preferences/Window/AboutPage.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <unistd.h>

#include "Shared/VTRFormatters.h"

namespace vantor {
namespace {

constexpr const char* kProc = "/proc";
constexpr guint kLookSeconds = 2;

/// As clocks have it: "0.42 s", "1:05", "3:01:05".
std::string durationText(double seconds) {
    if (seconds < 60)
        return fmt::format("{:.2f} s", seconds);
    const auto whole = static_cast<std::int64_t>(seconds);
    if (whole < 3600)
        return fmt::format("{}:{:02}", whole / 60, whole % 60);
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string usageText(const ProgramUsage& usage) {
    return fmt::format("{}  ·  {}", durationText(usage.processorSeconds),
                       formattedMemory(static_cast<double>(usage.memoryBytes) / 1024));
}

GtkWidget* newFigure() {
    GtkWidget* const label = newText("", "figure");
    gtk_label_set_xalign(GTK_LABEL(label), 1);
    return label;
}

}  // namespace

AboutPage::AboutPage(GtkWidget* column, WidgetMaker& make)
    : column_(column), item_(newFigure()), window_(newFigure()) {
    GtkWidget* const icon = gtk_image_new_from_icon_name("vantor-bar-cpu", GTK_ICON_SIZE_DIALOG);
    gtk_image_set_pixel_size(GTK_IMAGE(icon), 72);
    GtkWidget* const words = newColumn(2);
    gtk_widget_set_valign(words, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(words), newText("Vantor Bar CPU", "program-name"));
    gtk_container_add(GTK_CONTAINER(words), newText(text("Version") + " " VANTOR_VERSION, "help"));
    GtkWidget* const head = newLine(18);
    gtk_container_add(GTK_CONTAINER(head), icon);
    gtk_container_add(GTK_CONTAINER(head), words);
    gtk_widget_set_margin_bottom(head, 12);
    gtk_container_add(GTK_CONTAINER(column), head);

    GtkWidget* const list = make.addGroup(column, text("What it costs"));
    make.addRow(list, text("The item in the bar"), text("Processor time and memory so far"), item_);
    make.addRow(list, text("This window"), text("Processor time and memory so far"), window_);
    g_object_ref_sink(column_);
    g_signal_connect(column_, "map", G_CALLBACK(shown), this);
    g_signal_connect(column_, "unmap", G_CALLBACK(hidden), this);
    show();
}

AboutPage::~AboutPage() {
    hidden(nullptr, this);
    g_signal_handlers_disconnect_by_data(column_, this);
    g_object_unref(column_);
}

void AboutPage::show() {
    std::string items;
    for (const ProgramUsage& usage : usageOfItems(kProc, getuid()))
        items += (items.empty() ? "" : "\n") + usageText(usage);
    gtk_label_set_text(GTK_LABEL(item_),
                       items.empty() ? text("Isn't running").c_str() : items.c_str());
    if (const auto own = usageOfProcess(kProc, getpid()))
        gtk_label_set_text(GTK_LABEL(window_), usageText(*own).c_str());
}

void AboutPage::shown(GtkWidget*, gpointer self) noexcept {
    auto* const page = static_cast<AboutPage*>(self);
    page->show();
    if (page->clock_ == 0)
        page->clock_ = g_timeout_add_seconds(
            kLookSeconds,
            [](gpointer data) -> gboolean {
                static_cast<AboutPage*>(data)->show();
                return G_SOURCE_CONTINUE;
            },
            self);
}

void AboutPage::hidden(GtkWidget*, gpointer self) noexcept {
    if (const guint clock = std::exchange(static_cast<AboutPage*>(self)->clock_, 0); clock != 0)
        g_source_remove(clock);
}

}  // namespace vantor
