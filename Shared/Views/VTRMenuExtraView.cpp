#include "Shared/Views/VTRMenuExtraView.h"

#include <string>
#include <string_view>

#include "Foundation/NumberText.h"
#include "Painting/ImageSurface.h"
#include "Platform/MenuExtraHost.h"
#include "Shared/VTRImageCache.h"
#include "Shared/VTRMenuExtra.h"
#include "Shared/VTRPreferences.h"
#include "Shared/Views/MenubarColors.h"
#include "Shared/Views/VTRMenuExtraContentView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kBarHeight = 22;
constexpr std::int64_t kEmptyWidth = 4, kFallbackWidth = 20;
constexpr double kInactiveAlpha = 0.5;

/// A module without a view takes no room: it begins the item anew.
std::int64_t drawModule(VTRModule& module, bool isMenuDown, Painting::Context& context,
                        std::int64_t offset) {
    VTRMenuExtraContentView* const view = module.view();
    if (view == nullptr)
        return 0;
    view->setIsMenuDown(isMenuDown);
    return view->drawAtOffset(context, offset);
}

void drawFallback(Painting::Context& context, bool isMenuDown) {
    const bool white =
        BarState::current(isMenuDown).isInkWhite(storedSkinColor, LightHighlightInk::white);
    if (const auto image = VTRImageNamed(white ? "menubar-combined-white" : "menubar-combined"))
        context.drawImage(*image, Point{4, 2});
}

}  // namespace

VTRMenuExtraView::VTRMenuExtraView(MenuExtraHost& host, VTRMenuExtra& menuExtra)
    : host_(host), menuExtra_(menuExtra) {}

void VTRMenuExtraView::drawRect(Painting::Context& context, const Destination& destination) {
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    if (destination.isBitmap && destination.screens >= 2 && preferences != nullptr &&
        preferences->isYosemite()) {
        drawInactiveCopy(context);
        return;
    }
    isMenuDown_ = host_.isMenuDown();
    tellWidth(drawItem(context));
}

std::int64_t VTRMenuExtraView::drawSnapshot(Painting::Context& context) {
    isMenuDown_ = host_.isMenuDown();
    return drawItem(context);
}

void VTRMenuExtraView::drawInactiveCopy(Painting::Context& context) {
    isMenuDown_ = false;
    Painting::ImageSurface copy(host_.viewFrame().size(), context.scale());
    {
        Painting::Context picture = copy.context();
        drawItem(picture);
    }
    context.drawImage(copy, Point{0, 0}, kInactiveAlpha);
}

std::int64_t VTRMenuExtraView::drawItem(Painting::Context& context) {
    if (isMenuDown_)
        host_.drawMenuBackground(context);
    return menuExtra_.isCombinedExtra() ? drawCombinedModules(context) : drawModules(context);
}

std::int64_t VTRMenuExtraView::drawModules(Painting::Context& context) {
    std::int64_t offset = 0;
    if (const auto* const modules = menuExtra_.modules())
        for (const auto& module : *modules)
            offset = drawModule(*module, isMenuDown_, context, offset);
    return offset == 0 ? kEmptyWidth : offset;
}

std::int64_t VTRMenuExtraView::drawCombinedModules(Painting::Context& context) {
    const std::string mode = VTRObjectForKey("CombinedMenubarDisplayMode").stringValue();
    std::int64_t offset = 0;
    bool drawn = false;
    for (std::string_view rest = mode;;) {
        const auto comma = rest.find(',');
        VTRModule* const module =
            menuExtra_.moduleWithKey(static_cast<int>(leadingInteger(rest.substr(0, comma))));
        if (module != nullptr && module->menubar()) {
            offset += offset >= 1 ? VTRMenuExtraContentView::kGap : 0;
            offset = drawModule(*module, isMenuDown_, context, offset);
            drawn = true;
        }
        if (comma == std::string_view::npos)
            break;
        rest.remove_prefix(comma + 1);
    }
    if (drawn)
        return offset;
    drawFallback(context, isMenuDown_);
    return kFallbackWidth;
}

void VTRMenuExtraView::tellWidth(std::int64_t width) {
    if (width == lastSize_)
        return;
    if (zero_)
        host_.setLength(0);
    lastSize_ = width;
    host_.setViewFrameSize({static_cast<double>(width), kBarHeight});
    host_.setLength(host_.viewFrame().width);
}

}  // namespace vantor::inline VANTOR_MODULE
