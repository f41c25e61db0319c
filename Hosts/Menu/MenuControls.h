#pragma once

#include <vector>

#include "Shared/VTRMenuItem.h"
#include "Shared/Views/View.h"

namespace vantor {

// What can be pressed in the rows of a menu. Thread: main.

/// Whether a press on the view does something, and so ends the menu that it is in.
bool isControl(const View& view);
/// The buttons of a row that has some, from the left; none for a row that is one itself.
std::vector<View*> buttonsIn(View& row);
/// Whether the user can do anything with that row; others aren't highlighted.
bool isEnabled(const VTRMenuItem& item);
/// Whether choosing the row itself does something, wherever it is pressed.
bool isChoosable(const VTRMenuItem& item);
/// Whether the keyboard comes to that row: it can be highlighted, or has buttons.
bool isStop(const VTRMenuItem& item);
/// What a press of the row itself presses: its button, or the row; null where that does nothing.
View* controlOf(const VTRMenuItem& item);

}  // namespace vantor
