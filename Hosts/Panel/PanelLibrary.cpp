#include "Hosts/Panel/PanelLibrary.h"

#include <glib.h>

#include "Foundation/OwnModule.h"

namespace vantor {
namespace {

const VantorPanel* open() {
    const OwnModule module = openOwnModule("libvantor-panel.so", VANTOR_PANEL_ENTRY);
    if (module.entry != nullptr)
        return reinterpret_cast<VantorPanelEntry>(module.entry)();
    g_warning("vantorbar: %s", module.trouble.c_str());
    return nullptr;
}

}  // namespace

const VantorPanel* panelLibrary() {
    static const VantorPanel* const panel = open();
    return panel;
}

}  // namespace vantor
