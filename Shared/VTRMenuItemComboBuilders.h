#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "Foundation/Geometry.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

// Rows with a label at the left and a value at the right. The value that a row is made with is
// often a sample of the widest one to come; whoever made the row empties it then.
// Units:  points of a flipped view.
// Thread: main.

/// Where the row's container is.
enum class Container { view, alternateView };

/// `width` 0 fits the row to both texts; else the value has what it needs and the label what is
/// left, or, without a value, the other way round.
std::shared_ptr<VTRMenuItem> createComboTextMenuItem(std::string_view label, std::string_view value,
                                                     int width, int height);
/// Columns of given widths; those of 0 fit their text.
std::shared_ptr<VTRMenuItem> createComboTextMenuItem2(std::string_view label,
                                                      std::string_view value, Container container,
                                                      int labelWidth, int valueWidth,
                                                      const Rect& rect);

/// With a dot before the label, for rows that are going to be stacked in another one.
std::shared_ptr<VTRMenuItem> createComboTextMenuItemWithLegend(std::string_view label,
                                                               std::string_view value, int width,
                                                               int height, std::int64_t legendTag);
/// As wide as the columns and what is beside them.
std::shared_ptr<VTRMenuItem> createComboTextMenuItemWithLegend2(std::string_view label,
                                                                std::string_view value,
                                                                std::int64_t legendTag,
                                                                int labelWidth, int valueWidth,
                                                                const Rect& rect);
/// A label, room for a value, and a dot at the right end.
std::shared_ptr<VTRMenuItem> createMenuItemWithRightStatusDot(std::string_view label,
                                                              const Rect& rect);

/// As wide as the texts of now need, at least `minWidth`, and never narrower than it is.
void resizeMenuItemToContent(VTRMenuItem& item, double minWidth);
/// Lines up the labels and the values of rows, and tells the width. A row that is widened for the
/// sake of its own label leaves those before it as they are.
double resizeMenuItems(std::span<const std::shared_ptr<VTRMenuItem>> items, double minWidth,
                       double valueWidth);
double resizeMenuItem(const std::shared_ptr<VTRMenuItem>& item, double minWidth, double valueWidth);

}  // namespace vantor::inline VANTOR_MODULE
