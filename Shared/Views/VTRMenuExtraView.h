#pragma once

#include <cstddef>
#include <cstdint>

#include "Painting/Context.h"

namespace vantor {
class MenuExtraHost;
}

namespace vantor::inline VANTOR_MODULE {

class VTRMenuExtra;

/// The one view of an item that its host sees. Each paint asks the modules to paint themselves one
/// behind the other, and learns from that how wide the item has become.
/// Units:  points; the item is 22 high, with the origin at the lower left.
/// Thread: main, inside the host's paint.
class VTRMenuExtraView {
public:
    /// What a host paints into.
    struct Destination {
        bool isBitmap = false;     // a picture, rather than a screen
        std::size_t screens = 1;
    };

    VTRMenuExtraView(MenuExtraHost& host, VTRMenuExtra& menuExtra);
    VTRMenuExtraView(const VTRMenuExtraView&) = delete;
    VTRMenuExtraView& operator=(const VTRMenuExtraView&) = delete;

    /// Paints the item, and tells the host its width where that changed: what was painted may
    /// then have been cut off by the old width, and the host's next paint shows it whole.
    /// A picture, where there are several screens, is the host's copy for a screen that isn't in
    /// use: it comes out dimmed, without highlight, and changes no width.
    void drawRect(Painting::Context& context, const Destination& destination);
    /// Paints the item as it is, tells nobody, and answers its width.
    std::int64_t drawSnapshot(Painting::Context& context);

    VTRMenuExtra& menuExtra() const noexcept { return menuExtra_; }
    bool draw() const noexcept { return draw_; }
    void setDraw(bool draw) noexcept { draw_ = draw; }
    /// When set, a change of width takes the item out of the bar first.
    bool zero() const noexcept { return zero_; }
    void setZero(bool zero) noexcept { zero_ = zero; }
    bool isMenuDown() const noexcept { return isMenuDown_; }
    std::int64_t lastSize() const noexcept { return lastSize_; }
    void setLastSize(std::int64_t width) noexcept { lastSize_ = width; }

private:
    std::int64_t drawItem(Painting::Context& context);
    std::int64_t drawModules(Painting::Context& context);
    std::int64_t drawCombinedModules(Painting::Context& context);
    void drawInactiveCopy(Painting::Context& context);
    void tellWidth(std::int64_t width);

    MenuExtraHost& host_;
    VTRMenuExtra& menuExtra_;
    bool draw_ = false, zero_ = false, isMenuDown_ = false;
    std::int64_t lastSize_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
