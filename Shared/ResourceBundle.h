#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace vantor::inline VANTOR_MODULE {

/// A directory of resource files that are found by name.
/// Thread: any.
class ResourceBundle {
public:
    /// Nothing where there is no such directory.
    static std::optional<ResourceBundle> open(const std::filesystem::path& directory);

    /// The image file of that name, in the bundle itself or among its contents; the name may lack
    /// an extension, and a PNG file stands in for one of another kind.
    std::optional<std::filesystem::path> pathForImageResource(std::string_view name) const;

private:
    explicit ResourceBundle(std::filesystem::path directory);
    std::filesystem::path directory_;
};

}  // namespace vantor::inline VANTOR_MODULE
