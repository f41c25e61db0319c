#pragma once

#include <cstddef>

#include "Platform/MenuExtraHost.h"

namespace vantor::inline VANTOR_MODULE {
class MenuExtra;
}

namespace vantor {

/// A host whose bar has one place, as wide as its item likes, and no pointer.
/// It shows once after each batch of calls in which the item asked for it: whoever runs the main
/// queue calls `displayIfNeeded` then.
class ItemHost : public MenuExtraHost {
public:
    void setLength(double length) override { length_ = length; }
    double length() const noexcept override { return length_; }
    void setViewFrameSize(Size size) override { viewSize_ = size; }
    Rect viewFrame() const noexcept override { return {0, 0, viewSize_.width, viewSize_.height}; }
    void setNeedsDisplay() override { needsDisplay_ = true; }
    bool isMenuDown() const noexcept override { return false; }
    void drawMenuBackground(Painting::Context&) override {}
    void willUnload() override { needsDisplay_ = false; }

    /// Whose view is painted, where one is; null for nobody's. It outlives its time here.
    virtual void setExtra(MenuExtra*) noexcept {}
    void displayIfNeeded();
    /// How many samples of the processors there were to show.
    std::size_t samplesShown() const noexcept { return samplesShown_; }

protected:
    enum class Sample { isNew, wasShown };

private:
    virtual void display(Sample sample) = 0;

    double length_ = 0;
    Size viewSize_;
    bool needsDisplay_ = false;
    double lastSampleID_ = 0;
    std::size_t samplesShown_ = 0;
};

}  // namespace vantor
