#include "Shared/VTRTranslations.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "Foundation/LanguageTag.h"
#include "Platform/Directories.h"
#include "Platform/RegionalSettings.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferenceFunctions.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBundle = "VantorBarCPU.bundle";
constexpr std::string_view kDefaultTable = "Localizable";
constexpr std::string_view kFallbackLanguage = "en";
constexpr std::string_view kFolderExtension = ".lproj";

}  // namespace

VTRTranslations& VTRTranslations::sharedTranslations() {
    return ProcessContext::current().translations();
}

std::optional<std::string> VTRTranslations::localizedString(std::string_view key,
                                                            std::string_view bundle) {
    std::string fileName(bundle.empty() ? kDefaultTable : bundle);
    fileName += ".strings";
    auto table = translations_.find(fileName);
    if (table == translations_.end()) {
        StringTable read = readTable(fileName);
        if (read.empty())
            return std::nullopt;
        table = translations_.emplace(std::move(fileName), std::move(read)).first;
    }
    const auto text = table->second.find(key);
    return text == table->second.end() ? std::nullopt : std::optional(text->second);
}

fs::path VTRTranslations::bundlePath() const { return ports_.directories.resources() / kBundle; }

/// In an order of their own: that of the file system may differ from one installation to another.
std::vector<std::string> VTRTranslations::localizations() const {
    std::vector<std::string> found;
    std::error_code failed;  // ends the walk
    for (fs::directory_iterator entry(bundlePath(), failed), end; !failed && entry != end;
         entry.increment(failed))
        if (entry->path().extension() == kFolderExtension)
            found.push_back(entry->path().stem().string());
    std::ranges::sort(found);
    return found;
}

/// Nothing where there are no texts in any language.
std::optional<std::string> VTRTranslations::language() const {
    if (const PropertyValue chosen = VTRObjectForKey("language"))
        return chosen.stringValue();
    const std::vector<std::string> available = localizations();
    if (available.empty())
        return std::nullopt;
    return preferredLocalization(available, ports_.regionalSettings.preferredLanguages())
        .value_or(std::string(kFallbackLanguage));
}

StringTable VTRTranslations::readTable(const std::string& fileName) const {
    auto folder = language();
    if (!folder)
        return {};
    *folder += kFolderExtension;
    std::ifstream file(bundlePath() / *folder / fileName, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();  // reading by iterators would throw where the name is a folder's
    return stringTable(bytes.view());
}

std::string VTRLocalizedString(std::string_view key, std::optional<std::string_view> fallback,
                               std::string_view table) {
    auto text = VTRTranslations::sharedTranslations().localizedString(key, table);
    return text && !text->empty() ? *std::move(text) : std::string(fallback.value_or(key));
}

}  // namespace vantor::inline VANTOR_MODULE
