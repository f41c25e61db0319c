#pragma once

#include "Shared/VTRMenu.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

// A host can't highlight rows that are views of ours: they do it themselves, told from here.
// Thread: main.

/// Highlights that row, and no other, of those that can be. Null clears them all.
void highlightRow(VTRMenu& menu, const VTRMenuItem* item);

/// The same for rows whose highlight may run into their neighbours, which then paint their part
/// of it. Takes effect when the main queue runs next: hosts call from inside their tracking.
void highlightMenuItem(VTRMenu& menu, const std::shared_ptr<VTRMenuItem>& item);
/// No row is highlighted, nor any part of one.
void resetMenuItems(VTRMenu& menu);
/// The highlight of a row 15 points high runs a point into the rows above and below.
void menuItemResizeHightlight(VTRMenuItem& item);

}  // namespace vantor::inline VANTOR_MODULE
