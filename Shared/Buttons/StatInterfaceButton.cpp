#include "Shared/Buttons/StatInterfaceButton.h"

#include <array>
#include <cmath>

#include <fmt/format.h>

#include "Foundation/Image.h"
#include "Painting/Image.h"
#include "Platform/Workspace.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRImageCache.h"
#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kIconSize = 20, kPressedAlpha = 0.7;

/// What a tag opens, and what in its place where that doesn't exist.
struct Target {
    std::string_view path, otherwise;
};

constexpr std::array kTargets{
    Target{"/Applications/Utilities/Activity Monitor.app", ""},
    Target{"/Applications/Utilities/Console.app", ""},
    Target{"/Applications/Utilities/Terminal.app", ""},
    Target{"/Applications/Utilities/Vantor Bar.app", "/Applications/Vantor Bar.app"},
    Target{"/Applications/Utilities/Disk Utility.app", ""},
    Target{"/System/Library/CoreServices/Applications/Network Utility.app",
           "/Applications/Utilities/Network Utility.app"},
    Target{"/System/Library/PreferencePanes/Network.prefPane", ""},
    Target{"/Applications/Utilities/System Information.app",
           "/Applications/Utilities/System Profiler.app"},
    Target{"/System/Library/PreferencePanes/EnergySaver.prefPane", ""},
};

}  // namespace

std::string_view launcherPath(std::int64_t tag) {
    if (tag < 1 || tag > static_cast<std::int64_t>(kTargets.size()))
        return "";
    const Target& target = kTargets[static_cast<std::size_t>(tag - 1)];
    const Workspace& workspace = ProcessContext::current().ports().workspace;
    return target.otherwise.empty() || workspace.exists(target.path) ? target.path
                                                                     : target.otherwise;
}

void StatInterfaceButton::openApp() {
    const std::string_view path = launcherPath(tag_);
    if (path.empty())
        return;
    Workspace& workspace = ProcessContext::current().ports().workspace;
    if (path.ends_with("prefPane"))
        workspace.openFile(path);
    else
        workspace.launchApplication(path);
}

void StatInterfaceButton::setHighlighted(bool highlighted) {
    highlighted_ = highlighted;
    setNeedsDisplay();
}

void StatInterfaceButton::mouseDown(std::int64_t) { setHighlighted(true); }

void StatInterfaceButton::mouseUp(std::int64_t) {
    const bool pressed = highlighted_;
    setHighlighted(false);
    if (pressed && hasTarget_)
        openApp();
}

void StatInterfaceButton::updateColors() {
    iconScale_ = 0;
    setNeedsDisplay();
}

void StatInterfaceButton::findIcon(double scale) {
    iconScale_ = scale;
    icon_ = nullptr;
    const std::string_view path = launcherPath(tag_);
    const Workspace& workspace = ProcessContext::current().ports().workspace;
    const auto file =
        path.empty() ? std::nullopt
                     : workspace.iconFile(path, static_cast<int>(std::ceil(kIconSize * scale)));
    if (file)
        icon_ = Painting::Image::fromPixels(Image::fromFile(*file));
    if (!icon_)
        icon_ = VTRImageNamed(fmt::format("stats-launcher-{}", tag_));
}

void StatInterfaceButton::draw(Painting::Context& context) {
    context.fill(bounds(), menuBackground());
    if (iconScale_ != context.scale())
        findIcon(context.scale());
    if (icon_)
        context.drawImage(*icon_, Rect{0, 0, kIconSize, kIconSize},
                          highlighted_ ? kPressedAlpha : 1);
}

}  // namespace vantor::inline VANTOR_MODULE
