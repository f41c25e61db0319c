#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Foundation/Colour.h"
#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"
#include "Platform/Ports.h"
#include "Shared/ResourceBundle.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/VTRPreferenceMigration.h"

namespace vantor {
class Image;
}

namespace vantor::inline VANTOR_MODULE {

enum class Caching { off, on };

/// The one object through which every part reads and writes settings: the stored domain, the
/// table of defaults that answers for keys never written, a cache that keeps paints away from the
/// domain, and the colours already parsed. It also knows the desktop's appearance, and the
/// suite's images.
/// A key that is "" is no key: nothing is read or written for it.
/// Nobody is told of a write. Whoever hears that another process wrote a key calls
/// `resetValueForKey` before anything else.
/// Thread: main queue only, as there is no lock.
class VTRPreferences {
public:
    using Values = PropertyValue::Dictionary;
    using Colours = std::map<std::string, Colour, std::less<>>;
    /// A value of the domain, or an image under "image_NAME" or "networkicon_NAME".
    using Cached = std::variant<PropertyValue, std::shared_ptr<Image>>;
    using Cache = std::map<std::string, Cached, std::less<>>;

    explicit VTRPreferences(const Ports& ports);
    ~VTRPreferences();
    VTRPreferences(const VTRPreferences&) = delete;
    VTRPreferences& operator=(const VTRPreferences&) = delete;

    /// Null after `cleanup`.
    static VTRPreferences* sharedPreferences();
    static void cleanup() noexcept;

    /// With the cache: the stored value, else the default. Without: the stored value alone.
    PropertyValue objectForKey(std::string_view key, Caching useCache);
    PropertyValue prefenceValueForKey(std::string_view key) const;
    /// Nothing removes the key. What can't be stored is dropped.
    void setObject(const PropertyValue& value, std::string_view forKey);
    void removeObjectForKey(std::string_view key);
    void setBool(bool value, std::string_view forKey);
    void setInteger(std::int64_t value, std::string_view forKey);
    void setFloat(float value, std::string_view forKey);

    void clearCache() noexcept { cache_.clear(); }
    void resetValueForKey(std::string_view key);

    /// Black, or white on a dark desktop, where there is no readable colour.
    Colour colorForKey(std::string_view key);

    std::optional<std::filesystem::path> pathForImage(std::string_view name) const;
    /// Null where there is none; that isn't remembered.
    std::shared_ptr<Image> imageNamed(std::string_view name);
    std::shared_ptr<Image> networkIconNamed(std::string_view name);

    /// Points by which a text of that size is moved up, to stand in the middle of the bar.
    std::int64_t offsetForFont(std::string_view key);
    static std::int64_t verticalOffsetForFontSize(std::int64_t size) noexcept;

    std::optional<std::string> modelIdentifier() const;
    bool isLaptop() const;

    void updateMenubarTheme() noexcept;
    void updateContrast() noexcept;
    void menubarThemeChanged(const Notification& notification);
    void contrastChanged(const Notification& notification);

    void loadDefaults();
    /// The table of defaults, as that machine and region have it.
    static Values defaultsFor(const Ports& ports);

    /// Carries over the settings of the previous version, unless a process that may write them
    /// has done so. An extra may not: there they stand in the cache alone, where they hide the
    /// domain's until the key is refreshed or the appearance changes.
    PreferenceMigration migrateIfNeeded();
    /// One pass over the file of the previous version, whether or not it was carried over before.
    PreferenceMigration migrateToV5();
    /// The present identifiers of those cities that the table of the resource bundle knows.
    PropertyValue::Array migratedCities(const PropertyValue& list) const;

    bool isMavericks() const noexcept { return isMavericks_; }
    bool isYosemite() const noexcept { return isYosemite_; }
    bool didMigratePreferences() const noexcept { return didMigratePreferences_; }
    /// Whether this process writes what it migrates. False until set, and by then the first
    /// migration has run: whoever sets it calls `migrateIfNeeded` again.
    bool supportsMigration() const noexcept { return supportsMigration_; }
    void setSupportsMigration(bool supports) noexcept { supportsMigration_ = supports; }
    bool isMenubarDark() const noexcept { return isMenubarDark_; }
    bool increaseContrast() const noexcept { return increaseContrast_; }
    const Colours& colorCache() const noexcept { return colorCache_; }
    const Values& defaults() const noexcept { return defaults_; }
    const Cache& cache() const noexcept { return cache_; }
    const std::optional<ResourceBundle>& bundle() const noexcept { return bundle_; }

private:
    void observeAppearance();
    void forgetEverything() noexcept;
    void carryOver(const std::string& formerKey, const PropertyValue& formerValue,
                   PreferenceMigration& migration);
    PropertyValue migratedValue(std::string_view formerKey, const PropertyValue& value) const;
    void storeMigrated(std::string_view key, const PropertyValue& value);
    void markAsMigrated(PreferenceMigration& migration);
    std::shared_ptr<Image> cachedImage(std::string_view cacheKey) const;

    Ports ports_;
    bool isMavericks_ = false, isYosemite_ = false;
    bool didMigratePreferences_ = false, supportsMigration_ = false;
    bool isMenubarDark_ = false, increaseContrast_ = false;
    Colours colorCache_;
    Values defaults_;
    Cache cache_;
    std::optional<ResourceBundle> bundle_;
    Observation themeObservation_, contrastObservation_;
};

}  // namespace vantor::inline VANTOR_MODULE
