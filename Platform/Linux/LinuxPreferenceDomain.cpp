#include "Platform/Linux/LinuxPreferenceDomain.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "Foundation/PropertyList.h"
#include "Platform/Clock.h"
#include "Platform/Directories.h"
#include "Platform/SystemLog.h"

namespace vantor {
namespace {

constexpr double kSecondsBetweenLooks = 1;

/// Nothing where the bytes are damaged; an empty file is.
std::optional<PropertyValue::Dictionary> settingsIn(const std::string& bytes) {
    const std::optional<PropertyValue> value = propertyListValue(bytes);
    const PropertyValue::Dictionary* const settings = value ? value->dictionary() : nullptr;
    return settings == nullptr ? std::nullopt : std::optional(*settings);
}

/// What is too large or nested too deep to be read again would be taken for damage.
std::string readableXML(const PropertyValue::Dictionary& settings) {
    std::string xml = propertyListXML(settings);
    if (!settingsIn(xml))
        throw std::runtime_error("the value is too large or nested too deep to be stored");
    return xml;
}

/// False where the key stands so already.
bool change(PropertyValue::Dictionary& settings, std::string_view key, const PropertyValue& value) {
    const auto entry = settings.find(key);
    if (value.isNothing()) {
        if (entry == settings.end())
            return false;
        settings.erase(entry);
        return true;
    }
    if (entry != settings.end() && entry->second == value)
        return false;
    settings.insert_or_assign(std::string(key), value);
    return true;
}

}  // namespace

LinuxPreferenceDomain::LinuxPreferenceDomain(std::filesystem::path file, SystemLog& log,
                                             const Clock& clock)
    : file_(std::move(file)), log_(log), clock_(clock), stamp_{.error = -1} {}

std::filesystem::path LinuxPreferenceDomain::extrasFile(const Directories& directories) {
    const auto folder = directories.preferences();
    return folder ? *folder / fmt::format("{}.plist", kExtrasDomain) : std::filesystem::path{};
}

PropertyValue LinuxPreferenceDomain::read(std::string_view key) {
    refresh();
    const auto entry = values_.find(key);
    return entry == values_.end() ? PropertyValue{} : entry->second;
}

PropertyValue::Dictionary LinuxPreferenceDomain::readAll() {
    refresh();
    return values_;
}

void LinuxPreferenceDomain::write(std::string_view key, const PropertyValue& value) {
    if (file_.empty())
        throw std::runtime_error("this user has no place for settings");
    const std::filesystem::path file = withoutLinks(file_);
    makeDirectories(file.parent_path());
    const SharedFileLock lock(file);
    PropertyValue::Dictionary settings = valuesForWriting(file);
    if (!change(settings, key, value))
        return;
    replaceSharedFile(file, readableXML(settings));
    hasUnflushedName_ = true;
    noteChanged();
}

void LinuxPreferenceDomain::synchronise() {
    if (!std::exchange(hasUnflushedName_, false))
        return;
    try {
        flushDirectory(withoutLinks(file_).parent_path());
    } catch (const std::system_error& error) {
        // The settings are there for everyone to see; only a power cut now could undo them.
        log_.write(
            fmt::format("Vantor Bar settings may not outlive a power cut: {}", error.what()));
    }
}

void LinuxPreferenceDomain::refresh() {
    const double now = clock_.monotonic();
    if (!lookAgain_ && now - lookedAtSeconds_ < kSecondsBetweenLooks)
        return;
    lookAgain_ = false;
    lookedAtSeconds_ = now;
    if (stampOf(file_) != stamp_)
        load();
}

void LinuxPreferenceDomain::load() {
    FileReading reading = readSharedFile(file_);
    stamp_ = reading.stamp;
    handle_ = std::move(reading.handle);
    values_.clear();
    if (reading.state == FileReading::State::unreadable)
        log_.write(fmt::format("Vantor Bar settings \"{}\" can't be read, so defaults stand: {}",
                               file_.string(), reading.reason));
    if (reading.state != FileReading::State::whole)
        return;
    if (auto settings = settingsIn(reading.bytes))
        values_ = *std::move(settings);
    else
        setAsideIfStillDamaged();
}

void LinuxPreferenceDomain::setAsideIfStillDamaged() {
    try {
        const std::filesystem::path file = withoutLinks(file_);
        const SharedFileLock lock(file);
        const FileReading reading = readSharedFile(file);  // another process may have been faster
        if (reading.state == FileReading::State::whole && !settingsIn(reading.bytes))
            setAside(file);
        noteChanged();
    } catch (const std::system_error& error) {
        log_.write(fmt::format("Vantor Bar settings \"{}\" are damaged, so defaults stand: {}",
                               file_.string(), error.what()));
    }
}

void LinuxPreferenceDomain::setAside(const std::filesystem::path& file) {
    const std::filesystem::path aside = setAsideSharedFile(file, clock_.now());
    log_.write(fmt::format("Vantor Bar settings \"{}\" are damaged; kept as \"{}\"", file.string(),
                           aside.string()));
}

/// What stands in the file. Throws where it can't be read, because to replace it would be to lose
/// it. The caller holds the lock.
PropertyValue::Dictionary
LinuxPreferenceDomain::valuesForWriting(const std::filesystem::path& file) {
    const FileReading reading = readSharedFile(file);
    if (reading.state == FileReading::State::unreadable)
        throw std::runtime_error(
            fmt::format("can't read \"{}\": {}", file.string(), reading.reason));
    if (reading.state == FileReading::State::absent)
        return {};
    if (auto settings = settingsIn(reading.bytes))
        return *std::move(settings);
    setAside(file);
    return {};
}

}  // namespace vantor
