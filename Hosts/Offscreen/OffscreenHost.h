#pragma once

#include <optional>

#include "Foundation/Colour.h"
#include "Painting/ImageSurface.h"
#include "Platform/MenuExtraHost.h"

namespace vantor::inline VANTOR_MODULE {
class MenuExtra;
}

namespace vantor {

/// Hears what an offscreen host is told and does.
class OffscreenListener {
public:
    virtual ~OffscreenListener() = default;
    virtual void length(double) {}
    virtual void repaint() {}
};

/// A bar that nobody sees. It paints its item as a bar on a screen does: once for all that marked
/// it, when it is asked to; a paint that changes the item's frame is followed by another one.
/// Units:  points; the item is 22 high. Paints at 1x, snapshots at any scale.
/// Thread: main queue.
class OffscreenHost final : public MenuExtraHost {
public:
    static constexpr double kHeight = 22;

    /// `listener` may be null, and outlives the host.
    explicit OffscreenHost(OffscreenListener* listener = nullptr) noexcept : listener_(listener) {}

    /// Whose view is painted; null for nobody's. It outlives its time here.
    void setExtra(MenuExtra* extra) noexcept { extra_ = extra; }
    void setMenuDown(bool down) noexcept;
    void displayIfNeeded();

    /// The item as it is now, whole, painted anew: over `background`, or transparent. Tells nobody
    /// and changes no width. An item that isn't there is one point wide and empty.
    Painting::ImageSurface snapshot(double scale, const std::optional<Colour>& background);

    void setLength(double length) override;
    double length() const noexcept override { return length_; }
    void setViewFrameSize(Size size) override;
    Rect viewFrame() const noexcept override { return {0, 0, size_.width, size_.height}; }
    void setNeedsDisplay() override { needsDisplay_ = true; }
    bool isMenuDown() const noexcept override { return menuDown_; }
    void drawMenuBackground(Painting::Context& context) override;
    void willUnload() override { needsDisplay_ = false; }

private:
    OffscreenListener* listener_;
    MenuExtra* extra_ = nullptr;
    Size size_;
    double length_ = 0;
    bool needsDisplay_ = false, menuDown_ = false;
};

}  // namespace vantor
