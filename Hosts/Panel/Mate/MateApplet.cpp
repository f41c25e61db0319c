// The item in a panel of MATE, inside the panel's own process.

#include <mate-panel-applet.h>

#include "Hosts/Panel/PanelLibrary.h"

namespace {

constexpr const char* kApplet = "VantorBarCPUApplet";

/// In a panel at the side there is only as much room as the panel is wide.
void follow(MatePanelApplet* applet, GtkWidget* item) {
    const auto orientation = mate_panel_applet_get_orient(applet);
    const bool inRow = orientation == MATE_PANEL_APPLET_ORIENT_UP ||
                       orientation == MATE_PANEL_APPLET_ORIENT_DOWN;
    vantor::panelLibrary()->setMaximumWidth(item, inRow ? 0 : mate_panel_applet_get_size(applet));
}

void orientationChanged(MatePanelApplet* applet, guint, GtkWidget* item) { follow(applet, item); }
void sizeChanged(MatePanelApplet* applet, gint, GtkWidget* item) { follow(applet, item); }

void openPreferences(GtkAction*, gpointer) {
    if (!vantor::panelLibrary()->openPreferences())
        g_warning("vantorbar: there is no preferences application");
}

/// The panel takes actions of the kind that GTK wants to get rid of, and no other.
void addMenu(MatePanelApplet* applet) {
    GtkActionGroup* const actions = gtk_action_group_new("vantorbar");
    GtkAction* const preferences =
        gtk_action_new("VantorPreferences", g_dgettext("gtk30", "_Preferences"), nullptr, nullptr);
    g_signal_connect(preferences, "activate", G_CALLBACK(openPreferences), nullptr);
    gtk_action_group_add_action(actions, preferences);
    mate_panel_applet_setup_menu(
        applet, R"(<menuitem name="Preferences" action="VantorPreferences"/>)", actions);
    g_object_unref(preferences);
    g_object_unref(actions);
}

gboolean fill(MatePanelApplet* applet, const gchar* name, gpointer) {
    const VantorPanel* const panel = vantor::panelLibrary();
    if (g_strcmp0(name, kApplet) != 0 || panel == nullptr)
        return FALSE;
    GtkWidget* const item = panel->makeItem(nullptr);
    mate_panel_applet_set_flags(applet, MATE_PANEL_APPLET_EXPAND_MINOR);  // else 1 point high
    gtk_container_add(GTK_CONTAINER(applet), item);
    g_signal_connect(applet, "change-orient", G_CALLBACK(orientationChanged), item);
    g_signal_connect(applet, "change-size", G_CALLBACK(sizeChanged), item);
    follow(applet, item);
    addMenu(applet);
    gtk_widget_show_all(GTK_WIDGET(applet));
    return TRUE;
}

}  // namespace

extern "C" {  // the macro says nothing of the language
MATE_PANEL_APPLET_IN_PROCESS_FACTORY("VantorBarCPUFactory", PANEL_TYPE_APPLET, "VantorBarCPU", fill,
                                     nullptr)
}
