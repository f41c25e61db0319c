#include "Hosts/Panel/PanelAppearance.h"

#include <utility>

namespace vantor {

void PanelAppearance::setDark(bool isDark) {
    if (std::exchange(isDark_, isDark) != isDark)
        notifications_.deliverLocally(kInterfaceThemeChanged);
}

}  // namespace vantor
