#include "Painting/Cairo/TextLayouts.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include <pango/pangocairo.h>

namespace vantor::Painting {
namespace {

constexpr const char* kSystemFamilies = "Inter,DejaVu Sans,sans-serif";
constexpr std::string_view kHelvetica = "Helvetica";
/// What stands in for it is another face of the same widths on each machine; rows that are as wide
/// as their texts want the same one everywhere.
constexpr const char* kHelveticaFamilies = "Liberation Sans,Helvetica,Arial";
constexpr double kDotsAnInch = 72;
constexpr double kSmallestSize = 1, kLargestSize = 512;

using FontDescription =
    std::unique_ptr<PangoFontDescription, decltype(&pango_font_description_free)>;
using FontOptions = std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)>;

PangoWeight pangoWeight(Weight weight) noexcept {
    switch (weight) {
    case Weight::medium:
        return PANGO_WEIGHT_MEDIUM;
    case Weight::bold:
        return PANGO_WEIGHT_BOLD;
    case Weight::regular:
        break;
    }
    return PANGO_WEIGHT_NORMAL;
}

/// The plain family's stand-in is that of its relatives, too.
std::string familiesFor(const std::string& family) {
    if (family.empty())
        return kSystemFamilies;
    if (family == kHelvetica)
        return kHelveticaFamilies;
    return family.starts_with(kHelvetica) ? family + "," + kHelveticaFamilies : family;
}

FontDescription describe(const Font& font) noexcept {
    FontDescription description(pango_font_description_new(), pango_font_description_free);
    const std::string families = familiesFor(font.family);
    const double size = std::isfinite(font.size)
                            ? std::clamp(font.size, kSmallestSize, kLargestSize)
                            : kSmallestSize;
    pango_font_description_set_family(description.get(), families.c_str());
    pango_font_description_set_weight(description.get(), pangoWeight(font.weight));
    pango_font_description_set_absolute_size(description.get(), std::round(size * PANGO_SCALE));
    return description;
}

/// Grey edges, no red and blue ones; widths that don't depend on the screen's scale.
FontOptions fontOptions() noexcept {
    FontOptions options(cairo_font_options_create(), cairo_font_options_destroy);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    return options;
}

std::size_t hashOf(std::string_view text, const Font& font, std::optional<double> width) noexcept {
    const auto mixed = [](std::size_t hash, std::size_t more) {
        return hash * 1099511628211u ^ more;
    };
    std::size_t hash = std::hash<std::string_view>{}(text);
    hash = mixed(hash, std::hash<std::string_view>{}(font.family));
    hash = mixed(hash, std::hash<double>{}(font.size));
    hash = mixed(hash, std::hash<double>{}(width.value_or(-1)));
    return mixed(hash, static_cast<std::size_t>(font.weight) * 2 + (font.tabularDigits ? 1 : 0));
}

}  // namespace

void AttributesRelease::operator()(_PangoAttrList* attributes) const noexcept {
    pango_attr_list_unref(attributes);
}

TextLayouts::TextLayouts() noexcept
    : fontMap_(pango_cairo_font_map_new()), context_(pango_font_map_create_context(fontMap_.get())),
      tabularDigits_(pango_attr_list_new()) {
    pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fontMap_.get()), kDotsAnInch);
    pango_cairo_context_set_font_options(context_.get(), fontOptions().get());
    pango_context_set_round_glyph_positions(context_.get(), FALSE);
    pango_attr_list_insert(tabularDigits_.get(), pango_attr_font_features_new("tnum=1"));
    entries_.reserve(kMost);
    hashes_.reserve(kMost);
}

TextLayout& TextLayouts::layout(std::string_view text, const Font& font,
                                std::optional<double> width) noexcept {
    const std::size_t hash = hashOf(text, font, width);
    Entry* entry = find(hash, text, font, width);
    if (entry == nullptr) {
        entry = &entryToFill(font);
        hashes_[static_cast<std::size_t>(entry - entries_.data())] = hash;
        entry->text = text;
        entry->width = width;
        entry->layout.setText(text, width);
    }
    entry->lastUse = ++uses_;
    return entry->layout;
}

TextLayouts::Entry* TextLayouts::find(std::size_t hash, std::string_view text, const Font& font,
                                      std::optional<double> width) noexcept {
    for (auto found = hashes_.begin(); found != hashes_.end(); ++found) {
        found = std::find(found, hashes_.end(), hash);
        if (found == hashes_.end())
            break;
        Entry& entry = entries_[static_cast<std::size_t>(found - hashes_.begin())];
        if (entry.text == text && entry.font == font && entry.width == width)
            return &entry;
    }
    return nullptr;
}

/// A new one while there is room, else the one not asked for the longest, in that font.
TextLayouts::Entry& TextLayouts::entryToFill(const Font& font) noexcept {
    const bool isNew = entries_.size() < kMost;
    Entry& entry = isNew ? entries_.emplace_back(Entry{.layout = TextLayout(context_.get())})
                         : *std::ranges::min_element(entries_, {}, &Entry::lastUse);
    if (isNew)
        hashes_.push_back(0);
    if (isNew || entry.font != font)
        entry.layout.setFont(describe(font).get(),
                             font.tabularDigits ? tabularDigits_.get() : nullptr);
    entry.font = font;
    return entry;
}

}  // namespace vantor::Painting
