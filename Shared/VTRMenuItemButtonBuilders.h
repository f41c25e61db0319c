#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "Shared/Buttons/StatInterfaceMenuButton.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

// Rows with buttons.
// Units:  points of a flipped view.
// Thread: main.

/// What rows with a live button have in common.
class VTRMenuItemUtilities {
public:
    /// The action of such a row, without which a host would show it as one that can't be chosen.
    /// The button acts, not the row.
    static void fauxAction(VTRMenuItem& item) noexcept;
};

/// A label and a value under a button as large as the row, which carries the value. `width` 0 fits
/// the row to its texts, here and below.
std::shared_ptr<VTRMenuItem> createComboButtonMenuItem(std::string_view label,
                                                       std::string_view value, int width,
                                                       int height, bool bold,
                                                       StatInterfaceMenuButton::Action action);
std::shared_ptr<VTRMenuItem> createButtonMenuItem(std::string_view title,
                                                  StatInterfaceMenuButton::Action action, int width,
                                                  int height, bool bold);
/// With a check mark, off at first.
std::shared_ptr<VTRMenuItem> createTickButtonMenuItem(std::string_view title,
                                                      StatInterfaceMenuButton::Action action,
                                                      int width, int height, bool bold);

/// Five buttons that open programs; with any other number of tags the row is empty.
std::shared_ptr<VTRMenuItem> createLauncherMenuItem(const std::vector<std::int64_t>& tags);

}  // namespace vantor::inline VANTOR_MODULE
