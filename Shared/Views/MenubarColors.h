#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "Foundation/Colour.h"
#include "Painting/Context.h"
#include "Shared/Views/MenuExtraConfig.h"

namespace vantor::inline VANTOR_MODULE {

// The colours of the bar, by the preferences of the moment.

/// The skin's number, by the appearance where the user keeps separate styles.
std::int64_t skinColor();
/// The skin's number for those who don't know of separate styles.
std::int64_t storedSkinColor();
/// 0 on a dark bar, else the stored theme. The painters read the stored theme itself.
std::int64_t menubarTheme();

Colour fillColorForGraph(const GraphDictionary& graph);
Colour strokeColorForGraph(const GraphDictionary& graph);
/// From the top of the shape to its bottom.
Painting::Gradient gradientForGraph(const GraphDictionary& graph);

/// What labels and icons are on an open menu whose highlight is light.
enum class LightHighlightInk { dark, white };

/// What the bar looks like while a paint runs.
struct BarState {
    bool isMenuDown = false;
    bool isMenubarDark = false;
    bool increaseContrast = false;
    bool isYosemite = true;  // bars can be dark; before that a skin could make them so

    /// As it is now, with the menu open or not.
    static BarState current(bool isMenuDown);
    /// An open menu whose highlight is light: everything on it is black.
    bool isLightHighlight() const noexcept {
        return isMenuDown && isMenubarDark && increaseContrast;
    }
    /// Whether labels and icons are white, or dark. Only systems without dark bars ask for `skin`.
    bool isInkWhite(std::int64_t (*skin)(),
                    LightHighlightInk onLightHighlight = LightHighlightInk::dark) const;
};

/// Nothing where the context's colour is to be used as it is.
using GraphInk = std::variant<std::monostate, Colour, Painting::Gradient>;
enum class GraphKind { pie, other };
GraphInk inkForGraph(const GraphDictionary& graph, GraphKind kind, const BarState& bar);

}  // namespace vantor::inline VANTOR_MODULE
