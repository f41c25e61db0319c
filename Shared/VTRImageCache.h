#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "Shared/VTRImageCacheItem.h"

namespace vantor::inline VANTOR_MODULE {

struct EdgeInsets {
    double top = 0, left = 0, bottom = 0, right = 0;
    bool operator==(const EdgeInsets&) const = default;
};

/// The suite's images, each loaded and cut up once. An image that isn't there is null, and looked
/// for again at each call.
/// Units:  caps and insets are in points.
/// Thread: main, as there is no lock.
class VTRImageCache {
public:
    using NamedImage = std::shared_ptr<const Painting::Image>;
    using SlicedImage = std::shared_ptr<const VTRImageCacheItem>;
    using Cache = std::map<std::string, std::variant<NamedImage, SlicedImage>, std::less<>>;

    static VTRImageCache& sharedCache();

    NamedImage imageNamed(std::string_view name);

    SlicedImage imageWithLeftCap(std::string_view name, double withLeftCap);
    SlicedImage imageWithTopCap(std::string_view name, double withTopCap);
    SlicedImage image(std::string_view name, double withTopCap, double bottomCap);
    SlicedImage image(std::string_view name, const EdgeInsets& withInset);

    const Cache& cache() const noexcept { return cache_; }

private:
    static NamedImage loadImageNamed(std::string_view name);

    Cache cache_;
};

/// The image of that name in the shared cache.
VTRImageCache::NamedImage VTRImageNamed(std::string_view name);

}  // namespace vantor::inline VANTOR_MODULE
