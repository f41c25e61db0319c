#include "Hosts/Panel/PanelItem.h"

#include <gio/gdesktopappinfo.h>
#include <gtk/gtk.h>

#include "Hosts/Panel/Toolkit/GtkPanel.h"

namespace {

using vantor::GtkPanel;

constexpr const char* kPreferences = "com.kolbrin.vantorbar.preferences.desktop";

GtkWidget* makeItem(const VantorPanelOptions* options) {
    return GtkPanel::shared().makePlace(options != nullptr ? *options : VantorPanelOptions{});
}

void setMaximumWidth(GtkWidget* item, double width) {
    GtkPanel::shared().setMaximumWidth(item, width);
}

bool openPreferences() {
    GDesktopAppInfo* const application = g_desktop_app_info_new(kPreferences);
    if (application == nullptr)
        return false;
    const gboolean opened = g_app_info_launch(G_APP_INFO(application), nullptr, nullptr, nullptr);
    g_object_unref(application);
    return opened != FALSE;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const VantorPanel* vantorPanel1();

const VantorPanel* vantorPanel1() {
    static constexpr VantorPanel panel{makeItem, setMaximumWidth, openPreferences};
    return &panel;
}
