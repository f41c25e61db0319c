#pragma once

#include "Hosts/ItemHost.h"
#include "Hosts/ItemPicture.h"

namespace vantor {

/// Paints the item as a bar does, for nobody to see: what painting costs without a display.
/// Units:  points; the item is painted at 1x.
/// Thread: main queue.
class MemoryHost final : public ItemHost {
public:
    void setExtra(MenuExtra* extra) noexcept override { extra_ = extra; }
    const Painting::ImageSurface& picture() const noexcept { return picture_.shown(); }

private:
    void display(Sample sample) override;

    MenuExtra* extra_ = nullptr;
    ItemPicture picture_{1};
};

}  // namespace vantor
