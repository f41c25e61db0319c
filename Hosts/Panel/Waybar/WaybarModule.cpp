// The item in a bar that loads modules by the C interface of Waybar's "cffi" modules, version 1.

#include <cstddef>
#include <cstring>

#include <gtk/gtk.h>

#include "Hosts/Panel/PanelLibrary.h"

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

/// An entry of the bar's configuration: texts, which are the bar's.
struct ConfigEntry {
    const char* key;
    const char* value;
};

/// What the bar keeps for us. The bar may destroy the widget before it says that it is done.
struct Module {
    GtkWidget* item;  // a reference of our own
};

}  // namespace

EXPORTED const std::size_t wbcffi_version;
const std::size_t wbcffi_version = 1;

EXPORTED void* wbcffi_init(GtkContainer* parent, const ConfigEntry* entries, std::size_t count);
EXPORTED void wbcffi_deinit(void* instance);
EXPORTED void wbcffi_update(void* instance);
EXPORTED void wbcffi_refresh(void* instance, int signal);
EXPORTED void wbcffi_doaction(void* instance, const char* action);

/// The item takes no settings from the bar: they are in its own preferences.
void* wbcffi_init(GtkContainer* parent, const ConfigEntry*, std::size_t) {
    const VantorPanel* const panel = vantor::panelLibrary();
    if (panel == nullptr)
        return nullptr;
    auto* const module = new Module{GTK_WIDGET(g_object_ref_sink(panel->makeItem(nullptr)))};
    gtk_container_add(parent, module->item);
    gtk_widget_show(module->item);
    return module;
}

void wbcffi_deinit(void* instance) {
    auto* const module = static_cast<Module*>(instance);
    if (module == nullptr)
        return;
    gtk_widget_destroy(module->item);
    g_object_unref(module->item);
    delete module;
}

void wbcffi_update(void*) {}  // the item knows itself when something has changed
void wbcffi_refresh(void*, int) {}

void wbcffi_doaction(void*, const char* action) {
    if (action != nullptr && std::strcmp(action, "preferences") == 0)
        static_cast<void>(vantor::panelLibrary()->openPreferences());
}
