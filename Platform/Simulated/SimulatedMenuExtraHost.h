#pragma once

#include "Platform/MenuExtraHost.h"
#include "Platform/Simulated/Journal.h"

namespace vantor::simulated {

/// A place in a bar that nobody sees. It paints the item, once, when it is asked to after
/// something marked it.
class SimulatedMenuExtraHost final : public MenuExtraHost {
public:
    explicit SimulatedMenuExtraHost(Journal* journal = nullptr) noexcept : journal_(journal) {}

    void setMenuDown(bool down) noexcept;
    bool needsDisplay() const noexcept { return needsDisplay_; }
    /// One paint, if the item is marked.
    void displayIfNeeded();
    bool unloaded() const noexcept { return unloaded_; }
    int backgroundsDrawn() const noexcept { return backgroundsDrawn_; }

    void setLength(double length) override;
    double length() const noexcept override { return length_; }
    void setViewFrameSize(Size size) override;
    Rect viewFrame() const noexcept override { return frame_; }
    void setNeedsDisplay() override { needsDisplay_ = true; }
    bool isMenuDown() const noexcept override { return menuDown_; }
    void drawMenuBackground(Painting::Context&) override { ++backgroundsDrawn_; }
    void willUnload() override { unloaded_ = true; }

private:
    Journal* journal_;
    Rect frame_;
    double length_ = 0;
    bool needsDisplay_ = false, menuDown_ = false, unloaded_ = false;
    int backgroundsDrawn_ = 0;
};

}  // namespace vantor::simulated
