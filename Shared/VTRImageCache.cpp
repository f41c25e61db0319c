#include "Shared/VTRImageCache.h"

#include <array>
#include <filesystem>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "Painting/Image.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

namespace fs = std::filesystem;

/// Where one part comes from: its size, and where the source is painted in it.
struct Slice {
    Size size;
    Point source;
};
struct Slices {
    std::vector<Slice> slices;
    bool vertical = false;
};

/// The cap on the other side, when both have to leave one point of `length` between them.
double fittingCap(double cap, double otherCap, double length) noexcept {
    return cap + otherCap > length - 1 ? length - cap - 1 : otherCap;
}

Slices slicesAcross(Size image, const EdgeInsets& inset) {
    const double W = image.width, H = image.height, L = inset.left;
    const double R = fittingCap(L, inset.right == 0 ? L : inset.right, W);
    return {{{{L, H}, {0, 0}}, {{W - L - R, H}, {-R, 0}}, {{R, H}, {-(W - L), 0}}}, false};
}

Slices slicesDown(Size image, const EdgeInsets& inset) {
    const double W = image.width, H = image.height, T = inset.top;
    const double B = fittingCap(T, inset.bottom == 0 ? H - T - 1 : inset.bottom, H);
    return {{{{W, T}, {0, -(H - T)}}, {{W, H - T - B}, {0, -B}}, {{W, B}, {0, 0}}}, true};
}

/// The corners are all of the size of the upper left one, and what lies between them is cut from
/// beside that one.
Slices nineSlices(Size image, const EdgeInsets& inset) {
    const double W = image.width, H = image.height, L = inset.left, T = inset.top;
    const double R = fittingCap(L, inset.right == 0 ? W - L - 1 : inset.right, W);
    const double B = fittingCap(T, inset.bottom == 0 ? H - T - 1 : inset.bottom, H);
    const std::array<std::pair<double, double>, 3> columns{
        {{L, 0}, {W - L - R, -L}, {L, -(W - L)}}};
    const std::array<std::pair<double, double>, 3> rows{{{T, -(H - T)}, {H - T - B, -T}, {T, 0}}};
    Slices nine;
    for (const auto& [height, y] : rows)
        for (const auto& [width, x] : columns)
            nine.slices.push_back({{width, height}, {x, y}});
    return nine;
}

Slices slicesFor(Size image, const EdgeInsets& inset) {
    if (inset.left > 0 && inset.top == 0)
        return slicesAcross(image, inset);
    if (inset.left == 0 && inset.top > 0)
        return slicesDown(image, inset);
    return inset.left > 0 && inset.top > 0 ? nineSlices(image, inset) : Slices{};
}

VTRImageCacheItem::Data cutUp(const Painting::Image& image, const Slices& slices) {
    VTRImageCacheItem::Data data;
    data.vertical = slices.vertical;
    for (const Slice& slice : slices.slices)
        data.parts.push_back(image.cutOut(slice.size, slice.source));
    return data;
}

/// The file of that name, or else of its larger scales.
std::optional<fs::path> pathForImageOfAnyScale(const VTRPreferences& preferences,
                                               std::string_view name) {
    const fs::path given(name);
    for (const std::string_view ending : {"", "@2x", "@3x"}) {
        fs::path scaled = fs::path(given).replace_extension();
        scaled += ending;
        scaled += given.extension();
        if (auto path = preferences.pathForImage(scaled.string()))
            return path;
    }
    return std::nullopt;
}

}  // namespace

VTRImageCache& VTRImageCache::sharedCache() { return ProcessContext::current().imageCache(); }

VTRImageCache::NamedImage VTRImageCache::imageNamed(std::string_view name) {
    const auto entry = cache_.find(name);
    if (entry != cache_.end())
        if (const auto* const image = std::get_if<NamedImage>(&entry->second))
            return *image;
    NamedImage image = loadImageNamed(name);
    if (image != nullptr)
        cache_.insert_or_assign(std::string(name), image);
    return image;
}

VTRImageCache::NamedImage VTRImageCache::loadImageNamed(std::string_view name) {
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    if (name.empty() || preferences == nullptr)
        return nullptr;
    const auto path = pathForImageOfAnyScale(*preferences, name);
    if (!path)
        return nullptr;
    return Painting::Image::fromFile(*path, fs::path(name).replace_extension().string());
}

VTRImageCache::SlicedImage VTRImageCache::imageWithLeftCap(std::string_view name,
                                                           double withLeftCap) {
    return image(name, EdgeInsets{.left = withLeftCap, .right = withLeftCap});
}

VTRImageCache::SlicedImage VTRImageCache::imageWithTopCap(std::string_view name,
                                                          double withTopCap) {
    return image(name, EdgeInsets{.top = withTopCap});
}

VTRImageCache::SlicedImage VTRImageCache::image(std::string_view name, double withTopCap,
                                                double bottomCap) {
    return image(name, EdgeInsets{.top = withTopCap, .bottom = bottomCap});
}

VTRImageCache::SlicedImage VTRImageCache::image(std::string_view name,
                                                const EdgeInsets& withInset) {
    fmt::memory_buffer key;  // on the stack: a paint asks for it again and again
    fmt::format_to(std::back_inserter(key), "{} - {:.0f}, {:.0f}, {:.0f}, {:.0f}", name,
                   withInset.left, withInset.right, withInset.top, withInset.bottom);
    const std::string_view keyText(key.data(), key.size());
    const auto entry = cache_.find(keyText);
    if (entry != cache_.end())
        if (const auto* const sliced = std::get_if<SlicedImage>(&entry->second))
            return *sliced;
    const NamedImage source = loadImageNamed(name);
    if (source == nullptr || source->size() == Size{0, 0})
        return nullptr;
    const auto item = std::make_shared<VTRImageCacheItem>();
    item->setData(cutUp(*source, slicesFor(source->size(), withInset)));
    cache_.insert_or_assign(std::string(keyText), item);
    return item;
}

VTRImageCache::NamedImage VTRImageNamed(std::string_view name) {
    return VTRImageCache::sharedCache().imageNamed(name);
}

}  // namespace vantor::inline VANTOR_MODULE
