#include "Shared/ResourceBundle.h"

#include <array>
#include <string>
#include <system_error>
#include <utility>

namespace vantor::inline VANTOR_MODULE {

namespace fs = std::filesystem;

ResourceBundle::ResourceBundle(fs::path directory) : directory_(std::move(directory)) {}

std::optional<ResourceBundle> ResourceBundle::open(const fs::path& directory) {
    std::error_code none;
    return fs::is_directory(directory, none) ? std::optional(ResourceBundle(directory))
                                             : std::nullopt;
}

std::optional<fs::path> ResourceBundle::pathForImageResource(std::string_view name) const {
    if (name.empty())
        return std::nullopt;
    const fs::path given(name);
    const std::array files{given, fs::path(std::string(name) + ".png"),
                           fs::path(given).replace_extension(".png")};
    std::error_code none;
    for (const fs::path& folder : {directory_, directory_ / "Contents" / "Resources"})
        for (const fs::path& file : files)
            if (fs::is_regular_file(folder / file, none))
                return folder / file;
    return std::nullopt;
}

}  // namespace vantor::inline VANTOR_MODULE
