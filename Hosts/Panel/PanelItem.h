#pragma once

#ifdef __cplusplus
extern "C" {
#else
#include <stdbool.h>
#endif

struct _GtkWidget;

/// How a panel's plug-in wants its place.
struct VantorPanelOptions {
    /// Called when the item's menu in this place opens and closes; may be null.
    void (*menuChanged)(void* data, bool isOpen);
    void* data;
};

/// The entry points of the shared object that carries the item in panels of others. Its number goes
/// up with each change of this file. Thread: GTK's.
#define VANTOR_PANEL_ENTRY "vantorPanel1"
struct VantorPanel {
    /// A widget, as wide as the item, to be put into a panel. Destroying it takes the item out.
    struct _GtkWidget* (*makeItem)(const struct VantorPanelOptions* options);
    /// The room that a panel at the side of a screen has for the item, which is shown smaller
    /// where it is wider; 0 for any. In points.
    void (*setMaximumWidth)(struct _GtkWidget* item, double width);
    /// Opens the preferences application. False where there is none.
    bool (*openPreferences)(void);
};
typedef const struct VantorPanel* (*VantorPanelEntry)(void);

#ifdef __cplusplus
}
#endif
