#include <cmath>
#include <cstdlib>
#include <iterator>
#include <optional>

#include <fmt/format.h>
#include <fmt/printf.h>

#include "Foundation/NumberText.h"
#include "Shared/Collectors/ItemReadings.h"
#include "Shared/VTRFormatters.h"
#include "Shared/VTRPreferences.h"
#include "Shared/VTRTranslations.h"
#include "Shared/Views/VTRMenuExtraContentView.h"

// The texts of the bar: a figure beside a graph, or in its place.

namespace vantor::inline VANTOR_MODULE {
namespace {

using Painting::Context;
using Painting::TextAttributes;

constexpr std::int64_t kSmallestFont = 8, kLargestFont = 16, kUsualFont = 13;
constexpr double kSmallFont = 9, kSmallTextHeight = 12;
constexpr std::int64_t kTextBottom = 3;
constexpr std::string_view kWidestPercentage = "100%";

/// What types 3 and 4 show.
enum Formatter { kMemory = 0, kSpace = 1, kSensor = 2, kBandwidth = 3, kBattery = 4, kDisk = 5 };

/// The last letters of a key name its variant for a dark bar.
std::string keyFor(std::string_view key, bool dark) {
    return dark ? fmt::format("{}-Dark", key) : std::string(key);
}

Colour colourFor(std::string_view key, bool dark) {
    return VTRColorForKey(keyFor(key, dark)).value_or(Colour{});
}

Colour textColour(std::string_view key, const BarState& bar) {
    if (bar.isMenuDown)
        return bar.isLightHighlight() ? kBlack : kWhite;
    return colourFor(key, bar.isMenubarDark);
}

/// One point below the text; none where its colour can't be seen.
std::optional<Painting::Shadow> shadowOf(const Colour& colour) {
    if (colour.alpha == 0)
        return std::nullopt;
    return Painting::Shadow{{0, -1}, colour};
}

Painting::Alignment alignmentOf(int alignment) noexcept {
    switch (static_cast<TextAlignment>(alignment)) {
    case TextAlignment::right:
        return Painting::Alignment::right;
    case TextAlignment::centre:
        return Painting::Alignment::centre;
    default:
        return Painting::Alignment::left;
    }
}

template <class Item>
const Item* firstAs(SampleSources collectors) {
    return collectors.empty() ? nullptr : dynamic_cast<const Item*>(collectors.front());
}

std::optional<SensorReading> sensorOf(SampleSources collectors) {
    const auto* const sensor = firstAs<SensorItem>(collectors);
    return sensor != nullptr ? std::optional(sensor->sensorReading()) : std::nullopt;
}

std::string_view sensorKeyOf(SampleSources collectors) {
    const auto* const sensor = firstAs<SensorItem>(collectors);
    return sensor != nullptr ? sensor->sensorKey() : std::string_view();
}

std::string batteryText(SampleSources collectors) {
    const auto* const battery = firstAs<BatteryItem>(collectors);
    return battery != nullptr ? VTRMenuExtraContentView::formattedBatteryTime(
                                    battery->batteryState(), battery->batteryTime())
                              : VTRMenuExtraContentView::formattedBatteryTime(0, 0);
}

std::int64_t bandwidthWidth() {
    const std::int64_t decimals = VTRIntegerForKey("Network_DecimalLevel");
    const std::int64_t width = decimals == 0 ? 42 : decimals == 1 ? 50 : 58;
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    const bool bold = preferences != nullptr && preferences->isYosemite() &&
                      VTRBoolForKey("Network_TextBold");
    return width + (bold ? 6 : 0);
}

}  // namespace

std::int64_t VTRMenuExtraContentView::drawTextAtOffset(Context& context, std::int64_t offset,
                                                       SampleSources collectors,
                                                       std::string_view key) {
    const auto entry = config_.textItems.find(key);
    if (entry == config_.textItems.end())
        return 0;
    const TextItem& item = entry->second;
    const double total = sumOfNewestSamples(collectors, item.keys, item.divideByCollectors);
    switch (static_cast<TextType>(item.type)) {
    case TextType::percentage: {
        // One width from "0%" to "100%", so that the bar doesn't move with the digits.
        fmt::memory_buffer text;
        fmt::format_to(std::back_inserter(text), "{:.0f}%", total);
        return drawString(context, {text.data(), text.size()}, offset, percentageAttributes(key),
                          kWidestPercentage) +
               kGap;
    }
    case TextType::formatted:
        return drawString(context, fmt::sprintf(item.format, total), offset,
                          percentageAttributes(key)) +
               kGap;
    case TextType::fromConfig:
        return drawString(context, configText(item.stringKey), offset, percentageAttributes(key)) +
               kGap;
    case TextType::small:
        return drawSmallText(context, offset, collectors, key, item, total);
    case TextType::large:
        return drawLargeText(context, offset, collectors, key, item);
    }
    return 0;
}

std::string VTRMenuExtraContentView::configText(std::string_view key) const {
    const auto text = texts_.find(key);
    return text == texts_.end() ? std::string() : text->second;
}

std::int64_t VTRMenuExtraContentView::drawString(Context& context, std::string_view text,
                                                 std::int64_t x, const TextAttributes& attributes,
                                                 std::string_view sizingText,
                                                 std::int64_t minimumWidth) {
    const Size size = Painting::sizeOfText(sizingText.empty() ? text : sizingText, attributes);
    auto width = static_cast<std::int64_t>(std::ceil(size.width));
    if (minimumWidth >= 1 && minimumWidth > width)
        width = minimumWidth;
    // Text of every size is set on the bar by hand; it is never centred by measuring.
    const std::int64_t y = VTRPreferences::verticalOffsetForFontSize(
                               static_cast<std::int64_t>(attributes.font.size)) +
                           kTextBottom;
    context.drawText(text,
                     Rect{static_cast<double>(x), static_cast<double>(y),
                          static_cast<double>(width), std::ceil(size.height)},
                     attributes);
    return width;
}

/// A sensor's text may grow and never shrinks, so that the bar comes to rest.
std::int64_t VTRMenuExtraContentView::drawLargeText(Context& context, std::int64_t offset,
                                                    SampleSources collectors, std::string_view key,
                                                    const TextItem& item) {
    const TextAttributes& attributes = percentageAttributes(key);
    const int formatter = collectors.empty() ? -1 : item.formatNumber.value_or(-1);
    if (formatter == kSensor) {
        std::int64_t& minimum =
            minimumWidths_[fmt::format("sensor-minimum-width-{}", sensorKeyOf(collectors))];
        const std::int64_t width = drawString(context, formattedSensor(sensorOf(collectors)),
                                              offset, attributes, {}, minimum);
        minimum = std::max(minimum, width);
        return width + kGap;
    }
    const std::string text = formatter == kBattery ? batteryText(collectors) : std::string();
    return drawString(context, text, offset, attributes) + kGap;
}

std::int64_t VTRMenuExtraContentView::drawSmallText(Context& context, std::int64_t offset,
                                                    SampleSources collectors, std::string_view key,
                                                    const TextItem& item, double total) {
    std::string text(item.string);
    switch (item.formatNumber.value_or(-1)) {
    case kMemory:
        text = formattedMemory(total);
        break;
    case kSpace:
        text = formattedSpace(total);
        break;
    case kSensor:
        if (!collectors.empty())
            text = formattedSensor(sensorOf(collectors));
        break;
    case kBandwidth:
        text = formattedBandwidth(true, leadingNumber(configText(item.stringKey)));
        break;
    case kBattery:
        if (!collectors.empty())
            text = batteryText(collectors);
        break;
    case kDisk:
        text = formattedDiskActivity(total);
        break;
    default:
        break;
    }
    const TextAttributes& attributes = smallTextAttributes(key);
    const std::int64_t width =
        smallTextWidth(item, collectors, Painting::sizeOfText(text, attributes).width);
    context.drawText(text,
                     Rect{static_cast<double>(offset), static_cast<double>(item.offset),
                          static_cast<double>(width), kSmallTextHeight},
                     attributes);
    return width + kGap;
}

std::int64_t VTRMenuExtraContentView::smallTextWidth(const TextItem& item,
                                                     SampleSources collectors, double textWidth) {
    constexpr std::int64_t kDiskWidth = 47, kMargin = 2;
    if (item.width != 0)
        return item.width;
    switch (item.formatNumber.value_or(-1)) {
    case kDisk:
        return kDiskWidth;
    case kBandwidth:
        return bandwidthWidth();
    case kSensor: {
        std::int64_t& minimum =
            minimumWidths_[fmt::format("sensor-minimum-width-small-{}", sensorKeyOf(collectors))];
        minimum = std::max(minimum, static_cast<std::int64_t>(std::ceil(textWidth)));
        return minimum + kMargin;
    }
    default:
        return static_cast<std::int64_t>(textWidth + static_cast<double>(kMargin));
    }
}

Painting::Font VTRMenuExtraContentView::fontWithSize(std::int64_t size) {
    const bool fits = size >= kSmallestFont && size <= kLargestFont;
    Painting::Font font;
    font.size = static_cast<double>(fits ? size : kUsualFont);
    return font;
}

Painting::Font VTRMenuExtraContentView::correctedFont(Painting::Font font) {
    font.tabularDigits = true;
    return font;
}

const TextAttributes& VTRMenuExtraContentView::attributes(std::string_view key,
                                                          AttributesMaker make) {
    const AttributesKey kept{key, isMenuDown_};
    auto entry = textAttributes_.find(kept);
    if (entry == textAttributes_.end()) {
        const auto item = config_.textItems.find(key);
        const TextItem none;
        const TextItem& source = item == config_.textItems.end() ? none : item->second;
        // Keyed by the configuration's own text, which outlives the caller's.
        const AttributesKey stored{item == config_.textItems.end() ? std::string_view() : item->first,
                                   isMenuDown_};
        entry = textAttributes_.emplace(stored, (this->*make)(source, barState())).first;
    }
    return entry->second;
}

const TextAttributes& VTRMenuExtraContentView::percentageAttributes(std::string_view key) {
    return attributes(key, &VTRMenuExtraContentView::makePercentageAttributes);
}

const TextAttributes& VTRMenuExtraContentView::smallTextAttributes(std::string_view key) {
    return attributes(key, &VTRMenuExtraContentView::makeSmallTextAttributes);
}

/// A dark bar casts no shadow here, while small texts have one there, if their dark colour shows.
TextAttributes VTRMenuExtraContentView::makePercentageAttributes(const TextItem& item,
                                                                 const BarState& bar) const {
    TextAttributes made;
    made.font = correctedFont(fontWithSize(VTRIntegerForKey(item.font)));
    made.colour = textColour(item.color, bar);
    made.alignment = Painting::Alignment::centre;
    if (!item.shadow.empty() && !bar.isMenuDown && !bar.isMenubarDark)
        made.shadow = shadowOf(colourFor(item.shadow, false));
    return made;
}

TextAttributes VTRMenuExtraContentView::makeSmallTextAttributes(const TextItem& item,
                                                                const BarState& bar) const {
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    const bool yosemite = preferences != nullptr && preferences->isYosemite();
    const bool bold = !yosemite || (!item.boldKey.empty() && VTRBoolForKey(item.boldKey));
    TextAttributes made;
    made.font.size = kSmallFont;
    made.font.weight = bold ? Painting::Weight::bold : Painting::Weight::regular;
    made.font = correctedFont(made.font);
    made.colour = textColour(item.color, bar);
    made.alignment = alignmentOf(item.alignment);
    if (!item.shadow.empty() && !bar.isMenuDown)
        made.shadow = shadowOf(colourFor(item.shadow, bar.isMenubarDark));
    return made;
}

std::string VTRMenuExtraContentView::formattedBatteryTime(std::int32_t state, std::int32_t time) {
    constexpr std::int32_t kNotCharging = 3, kCharged = 0, kCalculating = -1, kUnknown = -3;
    const auto localised = [](std::string_view key) {
        return VTRLocalizedString(key, std::nullopt, "battery");
    };
    if (state == kNotCharging)
        return localised("Not Charging");
    if (time == kCalculating)
        return localised("Calculating");
    if (time == kUnknown)
        return localised("Unknown Time");
    if (state == kCharged)
        return localised("Charged");
    return fmt::sprintf("%i:%02d", time / 60, time % 60);
}

}  // namespace vantor::inline VANTOR_MODULE
