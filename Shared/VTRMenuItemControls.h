#pragma once

#include <memory>
#include <string_view>

#include "Foundation/Geometry.h"
#include "Painting/Text.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItem.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {

// What the builders of rows are made of: the grid of the dropdown, containers, and controls put
// into them.
// Units:  points of a flipped view.
// Thread: main.

inline constexpr double kRowWidth = 225, kTextRowHeight = 15;
inline constexpr double kTextInset = 8, kValueInset = 8;

/// Where a text begins in a row that high. Its field is as high as the row all the same: one line
/// stands in the middle then.
double textY(double height) noexcept;
/// The width of a text in the font that rows are measured with, which is bold; not rounded.
double measuredWidth(std::string_view text) noexcept;
/// Whole points for a text and the room beside it.
double columnWidth(std::string_view text) noexcept;

/// A row with an empty container that widens with the menu and can be highlighted.
std::shared_ptr<VTRMenuItem> createRow(Size size);
/// The same for a row that is going to be stacked in another one, which paints for it.
std::shared_ptr<VTRMenuItem> createStackedRow(Size size);

/// A new view in the row's container, over those already there.
template <class Control>
std::shared_ptr<Control> addControl(const VTRMenuItem& item, const Rect& frame,
                                    Resizing resizing = Resizing::none) {
    auto control = std::make_shared<Control>(frame);
    control->setResizing(resizing);
    item.anyView()->addSubview(control);
    return control;
}

/// How a field differs from a plain one.
struct FieldStyle {
    Resizing resizing = Resizing::none;
    Painting::Alignment alignment = Painting::Alignment::left;
    bool bold = true, alternateFont = false, truncatesTail = false;
};
inline constexpr FieldStyle kPlainValue{.alignment = Painting::Alignment::right};
/// Keeps its distance from the right edge.
inline constexpr FieldStyle kValueAtTheRight{.resizing = Resizing::leftMargin,
                                             .alignment = Painting::Alignment::right};

/// In the colour and the font that its kind has in the theme of now.
void applyStyle(StatInterfaceTextField& field, const FieldStyle& style);

template <class Field>
std::shared_ptr<Field> addField(const VTRMenuItem& item, const Rect& frame, std::string_view text,
                                const FieldStyle& style) {
    auto field = addControl<Field>(item, frame);
    applyStyle(*field, style);
    field->setStringValue(text);
    return field;
}

}  // namespace vantor::inline VANTOR_MODULE
