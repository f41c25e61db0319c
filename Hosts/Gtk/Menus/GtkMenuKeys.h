#pragma once

#include <optional>
#include <string>

#include <gdk/gdk.h>

#include "Hosts/Menu/MenuWindows.h"

namespace vantor {

/// What a key does in a menu; nothing for one that writes.
std::optional<MenuKey> menuKeyOf(const GdkEventKey& event) noexcept;
/// What a key writes, in UTF-8; "" for a shortcut.
std::string textOf(const GdkEventKey& event);

}  // namespace vantor
