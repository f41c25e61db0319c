#include "Shared/InstalledApplications.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyList.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNamePrefix = "Vantor Bar";
constexpr std::string_view kPlainName = "Vantor Bar.app";
constexpr std::string_view kIdentifier = "com.kolbrin.vantorbar";
constexpr float kOldestShortVersion = 4.0F;

/// A directory that stands for one thing, such as an application.
bool isPackage(const fs::path& directory) {
    std::error_code ignored;
    return fs::is_directory(directory / "Contents", ignored);
}

void collectEntries(const fs::path& directory, std::vector<fs::path>& entries) {
    std::error_code error;
    std::vector<fs::path> here;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error))
        if (!entry->path().filename().string().starts_with('.'))
            here.push_back(entry->path());
    std::ranges::sort(here);
    for (const fs::path& path : here) {
        entries.push_back(path);
        if (fs::is_directory(fs::symlink_status(path, error)) && !isPackage(path))
            collectEntries(path, entries);
    }
}

PropertyValue::Dictionary bundleInformation(const fs::path& bundle) {
    const fs::path path = bundle / "Contents/Info.plist";
    std::error_code unreadable;
    if (!fs::is_regular_file(path, unreadable))  // a stream over a folder throws
        return {};
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto value = propertyListValue(text);
    const auto* const entries = value ? value->dictionary() : nullptr;
    return entries != nullptr ? *entries : PropertyValue::Dictionary{};
}

PropertyValue entryOf(const PropertyValue::Dictionary& information, std::string_view key) {
    const auto entry = information.find(key);
    return entry == information.end() ? PropertyValue{} : entry->second;
}

}  // namespace

std::optional<fs::path> newestInstalledApplication(const fs::path& applications) {
    std::vector<fs::path> entries;
    collectEntries(applications, entries);
    std::optional<fs::path> best;
    std::int64_t bestBuild = -1;
    for (const fs::path& path : entries) {
        const std::string name = path.filename().string();
        if (!name.starts_with(kNamePrefix))
            continue;
        const PropertyValue::Dictionary information = bundleInformation(path);
        if (entryOf(information, "CFBundleIdentifier").stringValue() != kIdentifier ||
            entryOf(information, "CFBundleShortVersionString").floatValue() < kOldestShortVersion)
            continue;
        const std::int64_t build = entryOf(information, "CFBundleVersion").integerValue();
        if (build > bestBuild || (build == bestBuild && name == kPlainName)) {
            bestBuild = build;
            best = path;
        }
    }
    return best;
}

}  // namespace vantor::inline VANTOR_MODULE
