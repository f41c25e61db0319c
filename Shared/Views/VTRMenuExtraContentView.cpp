#include "Shared/Views/VTRMenuExtraContentView.h"

#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {

VTRMenuExtraContentView::VTRMenuExtraContentView(const Rect& frame, VTRModuleDelegate* extra)
    : frame_(frame), extra_(extra) {}

VTRMenuExtraContentView::~VTRMenuExtraContentView() = default;

void VTRMenuExtraContentView::resetTextConfig() noexcept { textAttributes_.clear(); }

float VTRMenuExtraContentView::alpha() const {
    if (barState().isMenubarDark)
        return VTRFloatForKey("MenubarGraphOpacity-DarkMode");
    return VTRIntegerForKey("MenubarTheme") == 1 ? 1.0F : VTRFloatForKey("MenubarGraphOpacity");
}

}  // namespace vantor::inline VANTOR_MODULE
