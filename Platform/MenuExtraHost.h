#pragma once

#include "Foundation/Geometry.h"

namespace vantor::Painting {
class Context;
}

namespace vantor {

/// Port: the place in a bar that a host gives to one extra. Main queue only.
class MenuExtraHost {
public:
    virtual ~MenuExtraHost() = default;
    /// Points. The host makes room of that length; 0 takes the item out of the bar.
    virtual void setLength(double length) = 0;
    virtual double length() const noexcept = 0;
    /// The frame of the view that stands in the item, whose origin is the item's.
    virtual void setViewFrameSize(Size size) = 0;
    virtual Rect viewFrame() const noexcept = 0;
    /// The item wants to be shown anew, once, after what is running now.
    virtual void setNeedsDisplay() = 0;
    virtual bool isMenuDown() const noexcept = 0;
    /// Inside a paint: the highlight of an open menu, under the whole item.
    virtual void drawMenuBackground(Painting::Context& context) = 0;
    /// The extra is gone; the host gives its place to others.
    virtual void willUnload() = 0;
};

}  // namespace vantor
