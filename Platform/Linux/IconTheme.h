#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/Environment.h"

namespace vantor {

/// A folder of an icon theme, and the sizes of icons that it is good for.
struct IconFolder {
    std::string path;                   // in the theme's own folder
    int smallestPixels, largestPixels;  // both included
    bool operator==(const IconFolder&) const = default;
};

/// What an icon theme says of itself.
struct IconTheme {
    std::vector<IconFolder> folders;
    std::vector<std::string> inherits;  // themes that have what it lacks, the first of them first
};

/// The text of an index.theme. What makes no sense is passed over.
IconTheme parseIconTheme(std::string_view text);

/// Where icons are looked for.
struct IconPlaces {
    std::vector<std::filesystem::path> folders;  // with a folder a theme, those that win first
    std::vector<std::filesystem::path> loose;    // with icons of no theme
    std::string theme;                           // the user's; "" where it isn't known
};
IconPlaces iconPlaces(const std::optional<std::filesystem::path>& dataHome,
                      const Environment& environment);

/// The PNG file that best fits so many pixels, of two that fit equally badly the larger one. The
/// user's theme comes first, then what it inherits from, then the theme that all applications
/// install into. An icon may also be a file's path. Nothing where there is no such file.
std::optional<std::filesystem::path> findIcon(std::string_view icon, int pixels,
                                              const IconPlaces& places);

}  // namespace vantor
