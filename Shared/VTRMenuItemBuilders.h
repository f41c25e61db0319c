#pragma once

#include <memory>
#include <string_view>

#include "Foundation/Geometry.h"
#include "Painting/Text.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

class StatInterfaceTextFieldLabel;
class StatInterfaceTextFieldValue;

// Rows of texts and pictures. Rows are made once; what runs at each sample sets texts and nothing
// else. A row is as wide as it is told, or, where it is told 0 and measures a text, as that needs.
// Units:  points of a flipped view.
// Thread: main.

/// Four whole numbers as a rectangle's. What they mean is the affair of whoever takes it.
Rect VTRMakeRect(int a, int b, int c, int d) noexcept;
Size VTRMakeSize(int a, int b) noexcept;

/// For the stacking of others: without height.
std::shared_ptr<VTRMenuItem> createMenuItem();
/// The same, which isn't highlighted.
std::shared_ptr<VTRMenuItem> createFlippedMenuItem();
std::shared_ptr<VTRMenuItem> createMenuItemWithView(std::shared_ptr<StatInterfaceView> view);

/// A text as a label, or as a value. `width` may be 0.
std::shared_ptr<VTRMenuItem> createLabelMenuItem(std::string_view text, int width, int height,
                                                 bool bold);
std::shared_ptr<VTRMenuItem> createCenteredLabel(std::string_view text, int width, int height);
std::shared_ptr<VTRMenuItem> createTextMenuItem(std::string_view text, int width, int height,
                                                bool bold);
/// As large as `rect`.
std::shared_ptr<VTRMenuItem> createTextMenuItem2(std::string_view text, bool bold,
                                                 const Rect& rect);

/// A picture before a text, or behind it; without image as yet.
std::shared_ptr<VTRMenuItem> createIconLabelMenuItem(std::string_view text, int width, int height,
                                                     bool bold);
std::shared_ptr<VTRMenuItem> createRightIconLabelMenuItem(std::string_view text, int width,
                                                          int height, bool bold);

/// A process with two figures, and the heads of such a list: words, or pictures.
std::shared_ptr<VTRMenuItem> createDoubleProcessItem(int width, int height);
std::shared_ptr<VTRMenuItem> createProcessHeaderItem(int width, int height);
std::shared_ptr<VTRMenuItem> createProcessImageHeaderItem(int width, int height);

/// Fields for rows that somebody puts together by hand. They widen with what is around them.
std::shared_ptr<StatInterfaceTextFieldValue> createValueField(Painting::Alignment alignment,
                                                              const Rect& rect);
std::shared_ptr<StatInterfaceTextFieldLabel> createLabelField(Painting::Alignment alignment,
                                                              const Rect& rect);

}  // namespace vantor::inline VANTOR_MODULE
