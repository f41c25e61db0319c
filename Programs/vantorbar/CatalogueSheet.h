#pragma once

#include <filesystem>

#include "Painting/ImageSurface.h"

namespace vantor {

/// What lies around the rows.
enum class Paper { light, dark };

/// Every row and control of the dropdown on one sheet: in the light theme at the left and in the
/// dark one at the right, each as it is and highlighted. `resources` holds VantorBar.bundle.
Painting::ImageSurface paintCatalogue(const std::filesystem::path& resources, double scale,
                                      Paper paper);

}  // namespace vantor
