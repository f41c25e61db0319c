#pragma once

#include <string_view>

namespace vantor {

// Posted on the distributed centre when the desktop's appearance may have changed.
inline constexpr std::string_view kInterfaceThemeChanged = "AppleInterfaceThemeChangedNotification";
inline constexpr std::string_view kIncreaseContrastChanged =
    "AXInterfaceIncreaseContrastStatusDidChange";

/// Port: the desktop's appearance. Main queue only; doesn't block.
class Appearance {
public:
    virtual ~Appearance() = default;
    virtual bool isDark() const noexcept = 0;
    virtual bool increasesContrast() const noexcept = 0;
};

}  // namespace vantor
