#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Foundation/Colour.h"
#include "Foundation/PropertyValue.h"
#include "Painting/ImageSurface.h"
#include "Platform/Ports.h"

namespace vantor {

/// What the bar's background looks like.
enum class BarShade { light, dark };
/// Behind items in bars of our own.
Colour barColour(BarShade shade) noexcept;

/// What of the real machine shows in the item, beside its figures.
struct PreviewMachine {
    std::size_t cpus = 2;
    std::int64_t physicalCores = 2;
    std::filesystem::path resources;
    /// Nothing, or what the graphics processor in use is called, and whether it is part of the
    /// processor.
    std::optional<std::string> graphicsModel{};
    bool isGraphicsIntegrated = false;

    static PreviewMachine of(const Ports& ports);
};

/// The item itself, as it would come out with the settings as they are, on a scripted machine that
/// is as large as the real one and has work that comes and goes. It measures nothing, writes
/// nothing and tells nobody.
/// Shape:  there are as many samples as the graph shows from the beginning.
/// Units:  points; the item is 22 high.
/// Thread: main queue. Making it makes its world the current one, for as long as it lives; texts
///         come in the user's language.
class ItemPreview {
public:
    ItemPreview(const PreviewMachine& machine, RegionalSettings& regionalSettings,
                const PropertyValue::Dictionary& stored);
    ~ItemPreview();
    ItemPreview(const ItemPreview&) = delete;
    ItemPreview& operator=(const ItemPreview&) = delete;

    /// Nothing goes back to the default.
    void setSetting(std::string_view key, const PropertyValue& value);
    /// All that is stored, in place of what was.
    void setSettings(const PropertyValue::Dictionary& stored);
    /// Lets a second pass.
    void advance();

    /// The item, transparent where it paints nothing.
    Painting::ImageSurface picture(BarShade shade, double scale);
    /// The item if it showed that mode alone, once for the whole machine.
    Painting::ImageSurface pictureOf(std::int64_t mode, BarShade shade, double scale);

private:
    struct World;
    std::unique_ptr<World> world_;
};

}  // namespace vantor
