#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Geometry.h"
#include "Painting/Cairo/TextLayout.h"
#include "Painting/Text.h"

struct _PangoAttrList;
struct _PangoContext;
struct _PangoFontMap;

namespace vantor::Painting {

struct AttributesRelease {
    void operator()(_PangoAttrList* attributes) const noexcept;
};

/// The layouts of the texts that were asked for last, so that the next paint of the same texts
/// builds nothing.
/// Shape:  at most kMost layouts, enough for all that an open dropdown shows; a new text takes the
///         place of the one not asked for the longest.
/// Units:  one point is one unit of Pango: 72 dots an inch, unhinted widths. The desktop's font
///         settings don't reach the font map, which is our own.
/// Thread: main.
class TextLayouts {
public:
    static constexpr std::size_t kMost = 192;

    TextLayouts() noexcept;

    /// The text on one line; with a width it ends in "…" where it is wider. Good until the next
    /// call.
    TextLayout& layout(std::string_view text, const Font& font,
                       std::optional<double> width = {}) noexcept;

private:
    struct Entry {
        std::uint64_t lastUse = 0;
        std::string text{};
        Font font{};
        std::optional<double> width{};
        TextLayout layout;
    };

    Entry* find(std::size_t hash, std::string_view text, const Font& font,
                std::optional<double> width) noexcept;
    Entry& entryToFill(const Font& font) noexcept;
    std::unique_ptr<_PangoFontMap, ObjectRelease> fontMap_;
    std::unique_ptr<_PangoContext, ObjectRelease> context_;
    std::unique_ptr<_PangoAttrList, AttributesRelease> tabularDigits_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> hashes_;  // of the entries, side by side for the search
    std::uint64_t uses_ = 0;
};

}  // namespace vantor::Painting
