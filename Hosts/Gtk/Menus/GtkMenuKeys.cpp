#include "Hosts/Gtk/Menus/GtkMenuKeys.h"

#include <array>

#include <gdk/gdkkeysyms.h>
#include <glib.h>

namespace vantor {
namespace {

struct KeyMeaning {
    guint key, onKeypad;
    MenuKey meaning;
};

constexpr std::array kMeanings{
    KeyMeaning{GDK_KEY_Up, GDK_KEY_KP_Up, MenuKey::up},
    KeyMeaning{GDK_KEY_Down, GDK_KEY_KP_Down, MenuKey::down},
    KeyMeaning{GDK_KEY_Left, GDK_KEY_KP_Left, MenuKey::left},
    KeyMeaning{GDK_KEY_Right, GDK_KEY_KP_Right, MenuKey::right},
    KeyMeaning{GDK_KEY_Home, GDK_KEY_KP_Home, MenuKey::home},
    KeyMeaning{GDK_KEY_End, GDK_KEY_KP_End, MenuKey::end},
    KeyMeaning{GDK_KEY_Page_Up, GDK_KEY_KP_Page_Up, MenuKey::pageUp},
    KeyMeaning{GDK_KEY_Page_Down, GDK_KEY_KP_Page_Down, MenuKey::pageDown},
    KeyMeaning{GDK_KEY_Return, GDK_KEY_KP_Enter, MenuKey::choose},
    KeyMeaning{GDK_KEY_space, GDK_KEY_KP_Space, MenuKey::choose},
    KeyMeaning{GDK_KEY_Escape, GDK_KEY_Cancel, MenuKey::escape},
};

}  // namespace

std::optional<MenuKey> menuKeyOf(const GdkEventKey& event) noexcept {
    for (const KeyMeaning& each : kMeanings)
        if (event.keyval == each.key || event.keyval == each.onKeypad)
            return each.meaning;
    return std::nullopt;
}

std::string textOf(const GdkEventKey& event) {
    constexpr guint kShortcut = GDK_CONTROL_MASK | GDK_MOD1_MASK | GDK_SUPER_MASK;
    const gunichar letter = gdk_keyval_to_unicode(event.keyval);
    if ((event.state & kShortcut) != 0 || letter == 0 || g_unichar_isprint(letter) == FALSE)
        return {};
    std::array<char, 6> bytes;
    const int size = g_unichar_to_utf8(letter, bytes.data());
    return {bytes.data(), static_cast<std::size_t>(size)};
}

}  // namespace vantor
