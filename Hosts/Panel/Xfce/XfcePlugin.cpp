// The item in a panel of Xfce, which runs this in a wrapper process of its own.

#include <libxfce4panel/libxfce4panel.h>

#include "Hosts/Panel/PanelLibrary.h"

namespace {

/// The panel mustn't hide under an open menu.
void menuChanged(void* plugin, bool isOpen) {
    xfce_panel_plugin_block_autohide(XFCE_PANEL_PLUGIN(plugin), isOpen ? TRUE : FALSE);
}

/// In a panel at the side there is only as much room as the panel is wide.
void follow(XfcePanelPlugin* plugin, GtkWidget* item) {
    const bool inRow = xfce_panel_plugin_get_mode(plugin) == XFCE_PANEL_PLUGIN_MODE_HORIZONTAL;
    vantor::panelLibrary()->setMaximumWidth(item,
                                            inRow ? 0 : xfce_panel_plugin_get_size(plugin));
}

gboolean sizeChanged(XfcePanelPlugin* plugin, gint, GtkWidget* item) {
    follow(plugin, item);
    return TRUE;  // else the panel makes it a square
}

void modeChanged(XfcePanelPlugin* plugin, XfcePanelPluginMode, GtkWidget* item) {
    follow(plugin, item);
}

void configure(XfcePanelPlugin*, gpointer) {
    if (!vantor::panelLibrary()->openPreferences())
        g_warning("vantorbar: there is no preferences application");
}

}  // namespace

extern "C" void vantor_construct(XfcePanelPlugin* plugin);

void vantor_construct(XfcePanelPlugin* plugin) {
    const VantorPanel* const panel = vantor::panelLibrary();
    if (panel == nullptr)
        return;
    const VantorPanelOptions options{menuChanged, plugin};
    GtkWidget* const item = panel->makeItem(&options);
    gtk_container_add(GTK_CONTAINER(plugin), item);
    gtk_widget_show(item);
    xfce_panel_plugin_add_action_widget(plugin, item);
    xfce_panel_plugin_menu_show_configure(plugin);
    g_signal_connect(plugin, "size-changed", G_CALLBACK(sizeChanged), item);
    g_signal_connect(plugin, "mode-changed", G_CALLBACK(modeChanged), item);
    g_signal_connect(plugin, "configure-plugin", G_CALLBACK(configure), nullptr);
    follow(plugin, item);
}
