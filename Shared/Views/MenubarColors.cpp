#include "Shared/Views/MenubarColors.h"

#include <array>

#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

using Painting::Gradient;

constexpr std::array<Colour, 4> kPalette{{{0.098, 0.58, 0.941},
                                          {1.0, 0.164, 0.164},
                                          {0.545, 0.329, 0.819},
                                          {0.8, 0.8, 0.8}}};
constexpr Colour kBrightBlue{0.192, 0.67, 1.0};
constexpr Colour kBrightRed{1.0, 0.254, 0.254};

struct Skin {
    Gradient plain, bright;
};
// By the skin's number; the bright column is for the dark panels of theme 1.
constexpr std::array<Skin, 9> kSkins{{
    {{{0.098, 0.58, 0.941}, {0.058, 0.494, 0.866}}, {{0.192, 0.67, 1.0}, {0.098, 0.58, 0.941}}},
    {{{1.0, 0.462, 0.168}, {1.0, 0.301, 0.07}}, {{1.0, 0.462, 0.168}, {1.0, 0.301, 0.07}}},
    {{{0.482, 0.549, 0.678}, {0.396, 0.462, 0.596}}, {{0.568, 0.639, 0.768}, {0.482, 0.549, 0.678}}},
    {{{0.431, 0.705, 0.0}, {0.321, 0.6, 0.039}}, {{0.513, 0.8, 0.113}, {0.431, 0.705, 0.0}}},
    {{{1.0, 0.215, 0.972}, {0.941, 0.141, 0.909}}, {{1.0, 0.305, 1.0}, {1.0, 0.215, 0.972}}},
    {{{0.545, 0.329, 0.819}, {0.458, 0.247, 0.745}}, {{0.627, 0.411, 0.921}, {0.545, 0.329, 0.819}}},
    {{{1.0, 0.164, 0.164}, {0.937, 0.094, 0.094}}, {{1.0, 0.254, 0.254}, {1.0, 0.164, 0.164}}},
    {{kBlack, kBlack}, {kBlack, kBlack}},
    {{kWhite, kWhite}, {kWhite, kWhite}},
}};
constexpr Gradient kUnknownSkin{{0.192, 0.67, 1.0}, {0.098, 0.58, 0.941}};

constexpr std::int64_t kDarkPanels = 1;  // the theme whose graphs stand on dark panels
constexpr std::int64_t kWhiteSkin = 8;   // for bars that the user made dark by other means

std::int64_t storedTheme() { return VTRIntegerForKey("MenubarTheme"); }

/// The colour that the user picked, if he wants one of his own.
std::optional<Colour> customColour(const CustomColour& custom) {
    if (custom.override_.empty() || VTRIntegerForKey(custom.override_) != 1)
        return std::nullopt;
    return VTRColorForKey(custom.colorKey);
}

Colour paletteColour(int number) {
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < kPalette.size() ? kPalette[index] : kPalette[0];
}

}  // namespace

std::int64_t skinColor() {
    if (!VTRBoolForKey("Theme-SeperateStyles"))
        return storedSkinColor();
    const bool dark = BarState::current(false).isMenubarDark;
    return VTRIntegerForKey(dark ? "MenubarSkinColor-Dark" : "MenubarSkinColor-Light");
}

std::int64_t storedSkinColor() { return VTRIntegerForKey("MenubarSkinColor"); }

std::int64_t menubarTheme() { return BarState::current(false).isMenubarDark ? 0 : storedTheme(); }

Colour fillColorForGraph(const GraphDictionary& graph) {
    if (const auto custom = customColour(graph.custom))
        return *custom;
    return paletteColour(graph.defaultColor.value_or(0));
}

Colour strokeColorForGraph(const GraphDictionary& graph) {
    if (const auto custom = customColour(graph.custom))
        return *custom;
    const int number = graph.defaultStroke.value_or(0);
    if (storedTheme() == kDarkPanels)
        return number == 1 ? kBrightRed : kBrightBlue;
    return number >= 0 && number < static_cast<int>(kPalette.size()) ? paletteColour(number)
                                                                     : kBrightBlue;
}

Gradient gradientForGraph(const GraphDictionary& graph) {
    if (const auto custom = customColour(graph.custom))
        return {*custom, *custom};
    const auto skin = static_cast<std::size_t>(skinColor());
    if (skin >= kSkins.size())
        return kUnknownSkin;
    return storedTheme() == kDarkPanels ? kSkins[skin].bright : kSkins[skin].plain;
}

BarState BarState::current(bool isMenuDown) {
    const VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    return {.isMenuDown = isMenuDown,
            .isMenubarDark = preferences != nullptr && preferences->isMenubarDark(),
            .increaseContrast = preferences != nullptr && preferences->increaseContrast(),
            .isYosemite = preferences != nullptr && preferences->isYosemite()};
}

bool BarState::isInkWhite(std::int64_t (*skin)(), LightHighlightInk onLightHighlight) const {
    if (isLightHighlight())
        return onLightHighlight == LightHighlightInk::white;
    return isMenuDown || isMenubarDark || (!isYosemite && skin() == kWhiteSkin);
}

GraphInk inkForGraph(const GraphDictionary& graph, GraphKind kind, const BarState& bar) {
    const bool pie = kind == GraphKind::pie;
    if (bar.isLightHighlight() && !pie)
        return kBlack;
    if (bar.isMenuDown && (pie || !bar.isMenubarDark) && storedTheme() == 0)
        return kWhite;
    if (graph.defaultColor)
        return fillColorForGraph(graph);
    if (graph.gradient)
        return gradientForGraph(graph);
    return {};
}

}  // namespace vantor::inline VANTOR_MODULE
