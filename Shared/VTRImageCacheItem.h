#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Foundation/Geometry.h"

namespace vantor::Painting {
class Context;
class Image;
}  // namespace vantor::Painting

namespace vantor::inline VANTOR_MODULE {

/// A picture cut into parts that can be painted at any size: the caps keep theirs, the centre and
/// the edges are stretched.
/// Shape:  `parts` are 3 or 9, or none. Three stand from left to right, or from the top down if
///         `vertical`; nine stand in rows from the top.
/// Errors: without parts it paints nothing.
/// Thread: main.
class VTRImageCacheItem {
public:
    struct Data {
        std::vector<std::shared_ptr<const Painting::Image>> parts;
        bool vertical = false;
    };

    const Data& data() const noexcept { return data_; }
    void setData(Data data) noexcept { data_ = std::move(data); }

    /// Caps that have no room are cut off on their inner sides.
    void drawInRect(Painting::Context& context, const Rect& rect, double alpha = 1) const noexcept;

private:
    Data data_;
};

}  // namespace vantor::inline VANTOR_MODULE
