#pragma once

#include "Hosts/Panel/PanelItem.h"

namespace vantor {

/// The shared object that carries the item, from beside the plug-in or from where the package has
/// it. Opened once and never closed: its types can't be registered a second time. Null, with a
/// line in the panel's log, where it can't be opened.
const VantorPanel* panelLibrary();

}  // namespace vantor
