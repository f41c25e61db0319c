#pragma once

#include <filesystem>
#include <optional>

namespace vantor::inline VANTOR_MODULE {

/// The newest installed copy of the application that this program belongs to: below
/// `applications`, the bundle named "Vantor Bar..." with our identifier, a short version of at
/// least 4.0 and the highest build number; of equals the one named exactly "Vantor Bar.app",
/// else the first by name. Nothing where there is none.
std::optional<std::filesystem::path>
newestInstalledApplication(const std::filesystem::path& applications);

}  // namespace vantor::inline VANTOR_MODULE
