#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Foundation/Geometry.h"
#include "Foundation/NotificationCenter.h"

namespace vantor {

/// Posted when a screen came, went or changed. The change may not be complete yet.
inline constexpr std::string_view kDisplaysReconfigured = "DisplayReconfiguration";

/// A screen as the window server lists it.
struct Screen {
    std::uint32_t number = 0;
    std::optional<std::string> location;  // the display's path in the registry
    std::vector<std::pair<std::string, std::string>> productNames;  // by language
    std::optional<Size> resolution;                                 // pixels an inch
    std::optional<Size> size;                                       // pixels
};

/// Port: the screens. Main queue only; doesn't block.
class Displays {
public:
    virtual ~Displays() = default;
    virtual std::vector<Screen> screens() = 0;
    /// Posts kDisplaysReconfigured, on the main queue.
    virtual NotificationCenter& notificationCenter() noexcept = 0;
};

}  // namespace vantor
