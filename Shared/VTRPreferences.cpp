#include "Shared/VTRPreferences.h"

#include <array>
#include <cstddef>
#include <exception>
#include <utility>

#include "Foundation/Image.h"
#include "Foundation/UUID.h"
#include "Platform/Appearance.h"
#include "Platform/Clock.h"
#include "Platform/Directories.h"
#include "Platform/DistributedNotifications.h"
#include "Platform/MachineIdentity.h"
#include "Platform/PreferenceDomain.h"
#include "Platform/RegionalSettings.h"
#include "Shared/DefaultSettings.h"
#include "Shared/KOLVersions.h"
#include "Shared/Platforms/PlatformController.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kMenubarThemeChanged = "VantorBarMenubarThemeChanged";
constexpr std::string_view kNetworkPane = "System/Library/PreferencePanes/Network.prefpane";

constexpr std::int64_t kSmallestFont = 8;
constexpr std::array<std::int64_t, 9> kVerticalOffsets{3, 2, 1, 1, 0, 0, 0, -1, -2};

std::string withoutExtension(std::string_view name) {
    return std::filesystem::path(name).replace_extension().string();
}

}  // namespace

VTRPreferences::VTRPreferences(const Ports& ports) : ports_(ports) {
    const KOLVersions versions(ports_.machineIdentity);
    isMavericks_ = versions.isMavericks();
    isYosemite_ = versions.isYosemite();
    if (isYosemite_)
        observeAppearance();
    bundle_ = ResourceBundle::open(ports_.directories.resources() / "VantorBar.bundle");
    loadDefaults();
    migrateIfNeeded();
}

VTRPreferences::~VTRPreferences() {
    bundle_.reset();
    themeObservation_.end();
    contrastObservation_.end();
}

VTRPreferences* VTRPreferences::sharedPreferences() {
    return ProcessContext::current().preferences();
}

void VTRPreferences::cleanup() noexcept { ProcessContext::current().cleanupPreferences(); }

void VTRPreferences::observeAppearance() {
    themeObservation_ = ports_.distributedNotifications.observe(
        std::string(kInterfaceThemeChanged),
        [this](const Notification& notification) { menubarThemeChanged(notification); });
    contrastObservation_ = ports_.distributedNotifications.observe(
        std::string(kIncreaseContrastChanged),
        [this](const Notification& notification) { contrastChanged(notification); });
    updateMenubarTheme();
    updateContrast();
}

// --- Values ------------------------------------------------------------------------------------

PropertyValue VTRPreferences::objectForKey(std::string_view key, Caching useCache) {
    if (key.empty())
        return {};
    if (useCache == Caching::off)
        return prefenceValueForKey(key);
    const auto entry = cache_.find(key);
    if (entry != cache_.end())
        if (const auto* const value = std::get_if<PropertyValue>(&entry->second))
            return *value;
    if (PropertyValue stored = prefenceValueForKey(key)) {
        cache_.insert_or_assign(std::string(key), stored);
        return stored;
    }
    // Not cached: should another process store a value, it shows without a word from anybody.
    const auto standard = defaults_.find(key);
    return standard == defaults_.end() ? PropertyValue{} : standard->second;
}

PropertyValue VTRPreferences::prefenceValueForKey(std::string_view key) const {
    return key.empty() ? PropertyValue{} : ports_.preferences.read(key);
}

void VTRPreferences::setObject(const PropertyValue& value, std::string_view forKey) {
    if (forKey.empty())
        return;
    try {
        ports_.preferences.write(forKey, value);
    } catch (const std::exception&) {
        // The setting stays what it was, as the next read shows.
    }
    ports_.preferences.synchronise();
    resetValueForKey(forKey);
}

void VTRPreferences::removeObjectForKey(std::string_view key) { setObject({}, key); }
void VTRPreferences::setBool(bool value, std::string_view forKey) { setObject(value, forKey); }
void VTRPreferences::setInteger(std::int64_t value, std::string_view forKey) {
    setObject(value, forKey);
}
void VTRPreferences::setFloat(float value, std::string_view forKey) { setObject(value, forKey); }

void VTRPreferences::resetValueForKey(std::string_view key) {
    if (const auto value = cache_.find(key); value != cache_.end())
        cache_.erase(value);
    if (const auto colour = colorCache_.find(key); colour != colorCache_.end())
        colorCache_.erase(colour);
}

Colour VTRPreferences::colorForKey(std::string_view key) {
    if (const auto parsed = colorCache_.find(key); parsed != colorCache_.end())
        return parsed->second;
    const Colour colour =
        colorFromString(objectForKey(key, Caching::on)).value_or(isMenubarDark_ ? kWhite : kBlack);
    colorCache_.emplace(key, colour);
    return colour;
}

void VTRPreferences::loadDefaults() { defaults_ = defaultsFor(ports_); }

VTRPreferences::Values VTRPreferences::defaultsFor(const Ports& ports) {
    return defaultSettings({.isLaptop = isLaptopModel(ports.machineIdentity.modelIdentifier()),
                            .usesMetricSystem = ports.regionalSettings.usesMetricSystem(),
                            .shortTimeFormat = ports.regionalSettings.shortTimeFormat(),
                            .now = ports.clock.now(),
                            .uuid = newUUID()});
}

// --- Images ------------------------------------------------------------------------------------

std::optional<std::filesystem::path> VTRPreferences::pathForImage(std::string_view name) const {
    return bundle_ ? bundle_->pathForImageResource(name) : std::nullopt;
}

std::shared_ptr<Image> VTRPreferences::cachedImage(std::string_view cacheKey) const {
    const auto entry = cache_.find(cacheKey);
    const auto* const image =
        entry == cache_.end() ? nullptr : std::get_if<std::shared_ptr<Image>>(&entry->second);
    return image == nullptr ? nullptr : *image;
}

std::shared_ptr<Image> VTRPreferences::imageNamed(std::string_view name) {
    const std::string cacheKey = "image_" + std::string(name);
    std::shared_ptr<Image> image = cachedImage(cacheKey);
    if (image == nullptr) {
        const auto path = pathForImage(name);
        image = path ? Image::fromFile(*path) : nullptr;
        if (image == nullptr)
            return nullptr;
        cache_.insert_or_assign(cacheKey, image);
    }
    image->setName(withoutExtension(name));
    return image;
}

std::shared_ptr<Image> VTRPreferences::networkIconNamed(std::string_view name) {
    const std::string cacheKey = "networkicon_" + std::string(name);
    if (auto image = cachedImage(cacheKey))
        return image;
    const auto pane = ResourceBundle::open(ports_.directories.systemRoot() / kNetworkPane);
    const auto path = pane ? pane->pathForImageResource(name) : std::nullopt;
    auto image = path ? Image::fromFile(*path) : nullptr;
    if (image != nullptr)
        cache_.insert_or_assign(cacheKey, image);
    return image;
}

std::int64_t VTRPreferences::offsetForFont(std::string_view key) {
    return verticalOffsetForFontSize(objectForKey(key, Caching::on).integerValue());
}

std::int64_t VTRPreferences::verticalOffsetForFontSize(std::int64_t size) noexcept {
    constexpr auto sizes = static_cast<std::int64_t>(kVerticalOffsets.size());
    if (size < kSmallestFont || size >= kSmallestFont + sizes)
        return 0;
    return kVerticalOffsets[static_cast<std::size_t>(size - kSmallestFont)];
}

// --- The machine and the desktop ---------------------------------------------------------------

std::optional<std::string> VTRPreferences::modelIdentifier() const {
    return ports_.machineIdentity.modelIdentifier();
}

bool VTRPreferences::isLaptop() const { return isLaptopModel(modelIdentifier()); }

void VTRPreferences::updateMenubarTheme() noexcept { isMenubarDark_ = ports_.appearance.isDark(); }

void VTRPreferences::updateContrast() noexcept {
    increaseContrast_ = ports_.appearance.increasesContrast();
}

void VTRPreferences::forgetEverything() noexcept {
    colorCache_.clear();
    cache_.clear();
}

void VTRPreferences::menubarThemeChanged(const Notification&) {
    forgetEverything();
    updateMenubarTheme();
    ports_.localNotifications.post(kMenubarThemeChanged);
}

/// A change of contrast has no notification of its own: it is told under the theme's name.
void VTRPreferences::contrastChanged(const Notification&) {
    forgetEverything();
    updateContrast();
    ports_.localNotifications.post(kMenubarThemeChanged);
}

}  // namespace vantor::inline VANTOR_MODULE
