#pragma once

#include <memory>
#include <string_view>

#include "Foundation/Geometry.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

// Rows between rows. With a menu and a key each is made once and found again in the menu's cache,
// so that a menu that is rebuilt has the same rows again; without one of them it is made anew.
// Thread: main.

/// A hairline. A width of 0 is 1, a height of 0 is 12.
std::shared_ptr<VTRMenuItem> createSpacerItem(VTRMenu* menu, std::string_view key, Size size);
/// Nothing but background, of the same sizes.
std::shared_ptr<VTRMenuItem> createFillerItem(VTRMenu* menu, std::string_view key, Size size);
/// The head of a dropdown. The title is shown in capitals.
std::shared_ptr<VTRMenuItem> createMainHeaderItem(VTRMenu* menu, std::string_view key,
                                                  std::string_view title, int width);
/// The head of a section, as wide as its title: the width that is given has no part in it.
std::shared_ptr<VTRMenuItem> createHeaderItem(VTRMenu* menu, std::string_view key,
                                              std::string_view title, int width);

}  // namespace vantor::inline VANTOR_MODULE
