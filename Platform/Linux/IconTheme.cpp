#include "Platform/Linux/IconTheme.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <utility>

#include <fmt/format.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestFileBytes = 1 << 20;
constexpr std::size_t kMostFolders = 4096, kMostThemes = 16;
constexpr int kLargestSize = 4096, kLargestScale = 8;
constexpr std::string_view kThemeOfAll = "hicolor";

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view takePart(std::string_view& rest, char separator) noexcept {
    const auto end = std::min(rest.find(separator), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return trimmed(part);
}

/// Calls `line(section, key, value)` for each line of a text in sections.
template <class Line>
void forEachLine(std::string_view text, Line&& line) {
    std::string_view section;
    while (!text.empty()) {
        std::string_view value = takePart(text, '\n');
        if (value.starts_with('[') && value.ends_with(']')) {
            section = value.substr(1, value.size() - 2);
            line(section, std::string_view(), std::string_view());
        } else if (!value.starts_with('#')) {
            const std::string_view key = takePart(value, '=');
            line(section, key, trimmed(value));
        }
    }
}

/// The sizes of one section, in points.
struct Sizes {
    int size = 0, least = 0, most = 0, threshold = 2, scale = 1;
    std::string_view type = "Threshold";

    void set(std::string_view key, std::string_view value) noexcept {
        constexpr std::pair<std::string_view, int Sizes::*> kNumbers[] = {
            {"Size", &Sizes::size},           {"MinSize", &Sizes::least}, {"MaxSize", &Sizes::most},
            {"Threshold", &Sizes::threshold}, {"Scale", &Sizes::scale},
        };
        if (key == "Type")
            type = value;
        for (const auto& [name, number] : kNumbers)
            if (key == name)
                std::from_chars(value.data(), value.data() + value.size(), this->*number);
    }
    bool makeSense() const noexcept {
        const auto isSize = [](int number) { return number >= 0 && number <= kLargestSize; };
        return size > 0 && isSize(size) && isSize(least) && isSize(most) && isSize(threshold) &&
               scale > 0 && scale <= kLargestScale;
    }
    IconFolder folder(std::string_view path) const {
        int from = size, to = size;
        if (type == "Scalable") {
            from = least > 0 ? least : size;
            to = most > 0 ? most : size;
        } else if (type != "Fixed") {
            from -= threshold;
            to += threshold;
        }
        return {std::string(path), from * scale, to * scale};
    }
};

std::optional<std::string> contentsOf(const fs::path& file) {
    std::error_code unreadable;
    if (!fs::is_regular_file(file, unreadable) ||
        fs::file_size(file, unreadable) > kLargestFileBytes)
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

/// The value of a key in a section of a file; "" where there is none.
std::string valueIn(const fs::path& file, std::string_view section, std::string_view key) {
    std::string found;
    const std::string text = contentsOf(file).value_or("");
    forEachLine(text, [&](std::string_view where, std::string_view what, std::string_view value) {
        if (where == section && what == key)
            found = value;
    });
    return found;
}

/// A name that leads nowhere else.
bool isPlainName(std::string_view name) noexcept {
    return !name.empty() && !name.starts_with('.') && name.find('/') == name.npos;
}

bool isFile(const fs::path& file) {
    std::error_code unreadable;
    return fs::is_regular_file(file, unreadable);
}

int distanceOf(const IconFolder& folder, int pixels) noexcept {
    return std::max({folder.smallestPixels - pixels, pixels - folder.largestPixels, 0});
}

class IconSearch {
public:
    IconSearch(std::string_view icon, int pixels, const IconPlaces& places)
        : file_(fmt::format("{}.png", icon)), pixels_(pixels), places_(places) {}

    std::optional<fs::path> find() {
        for (const std::string_view theme : {std::string_view(places_.theme), kThemeOfAll})
            if (auto file = findInTheme(std::string(theme)))
                return file;
        for (const fs::path& folder : places_.loose)
            if (isFile(folder / file_))
                return folder / file_;
        return std::nullopt;
    }

private:
    /// A theme that was looked through has nothing more to give: themes may inherit in circles.
    std::optional<fs::path> findInTheme(const std::string& name) {
        if (!isPlainName(name) || seen_.size() >= kMostThemes ||
            std::ranges::find(seen_, name) != seen_.end())
            return std::nullopt;
        seen_.push_back(name);
        const IconTheme theme = read(name);
        if (auto file = nearestIn(name, theme))
            return file;
        for (const std::string& other : theme.inherits)
            if (other != kThemeOfAll)
                if (auto file = findInTheme(other))
                    return file;
        return std::nullopt;
    }
    IconTheme read(const std::string& name) const {
        for (const fs::path& folder : places_.folders)
            if (const auto text = contentsOf(folder / name / "index.theme"))
                return parseIconTheme(*text);
        return {};
    }
    std::optional<fs::path> nearestIn(const std::string& name, const IconTheme& theme) const {
        std::vector<const IconFolder*> nearest;
        for (const IconFolder& folder : theme.folders)
            nearest.push_back(&folder);
        std::ranges::stable_sort(nearest, [this](const IconFolder* one, const IconFolder* other) {
            const int here = distanceOf(*one, pixels_), there = distanceOf(*other, pixels_);
            return here != there ? here < there : one->largestPixels > other->largestPixels;
        });
        for (const IconFolder* const folder : nearest)
            for (const fs::path& place : places_.folders)
                if (const fs::path file = place / name / folder->path / file_; isFile(file))
                    return file;
        return std::nullopt;
    }

    std::string file_;
    int pixels_;
    const IconPlaces& places_;
    std::vector<std::string> seen_;
};

}  // namespace

IconTheme parseIconTheme(std::string_view text) {
    IconTheme theme;
    std::string_view folder;
    Sizes sizes;
    const auto finish = [&] {
        const bool leadsOut = folder.starts_with('/') || folder.find("..") != folder.npos;
        if (!folder.empty() && !leadsOut && sizes.makeSense() &&
            theme.folders.size() < kMostFolders)
            theme.folders.push_back(sizes.folder(folder));
        sizes = {};
    };
    forEachLine(text, [&](std::string_view section, std::string_view key, std::string_view value) {
        if (key.empty()) {
            finish();
            folder = section == "Icon Theme" ? std::string_view() : section;
        } else if (!folder.empty()) {
            sizes.set(key, value);
        } else if (section == "Icon Theme" && key == "Inherits") {
            theme.inherits.clear();
            while (!value.empty())
                if (const std::string_view name = takePart(value, ','); isPlainName(name))
                    theme.inherits.emplace_back(name);
        }
    });
    finish();
    return theme;
}

IconPlaces iconPlaces(const std::optional<fs::path>& dataHome, const Environment& environment) {
    IconPlaces places;
    const auto home = nonEmpty(environment, "HOME");
    if (home)
        places.folders.push_back(fs::path(*home) / ".icons");
    if (dataHome)
        places.folders.push_back(*dataHome / "icons");
    const std::string all =
        nonEmpty(environment, "XDG_DATA_DIRS").value_or("/usr/local/share:/usr/share");
    for (std::string_view rest = all; !rest.empty();)
        if (const std::string_view folder = takePart(rest, ':'); folder.starts_with('/')) {
            places.folders.push_back(fs::path(folder) / "icons");
            places.loose.push_back(fs::path(folder) / "pixmaps");
        }
    places.loose.insert(places.loose.begin(), places.folders.begin(), places.folders.end());
    const auto configuration = nonEmpty(environment, "XDG_CONFIG_HOME");
    if (!configuration && !home)
        return places;
    const fs::path settings =
        configuration ? fs::path(*configuration) : fs::path(*home) / ".config";
    places.theme = valueIn(settings / "gtk-3.0/settings.ini", "Settings", "gtk-icon-theme-name");
    if (places.theme.empty())
        places.theme = valueIn(settings / "kdeglobals", "Icons", "Theme");
    return places;
}

std::optional<fs::path> findIcon(std::string_view icon, int pixels, const IconPlaces& places) {
    if (icon.starts_with('/'))
        return icon.ends_with(".png") && isFile(icon) ? std::optional(fs::path(icon))
                                                      : std::nullopt;
    return isPlainName(icon) ? IconSearch(icon, pixels, places).find() : std::nullopt;
}

}  // namespace vantor
