#pragma once

#include <filesystem>
#include <string_view>

#include "Platform/Linux/SharedFile.h"
#include "Platform/PreferenceDomain.h"

namespace vantor {

class Clock;
class Directories;
class SystemLog;

/// The stored settings as one XML property list, shared by every process of the user.
/// Shape:  a copy in memory answers reads. Whether the file is still the one that was read is
///         looked at after `noteChanged`, and otherwise at most once a second.
/// Writes: under a lock beside the file, which is read again, changed in that one key, and
///         replaced whole; the target of a symbolic link is replaced, not the link. The bytes are
///         on the disk when `write` returns; `synchronise` sees to their name.
/// Errors: without a file to its name it is empty, and writing throws.
///         A file that can't be read stays as it is: reads give nothing, writes throw. A damaged
///         one is set aside under another name. Either is told to the system log, once.
/// Thread: main queue only.
class LinuxPreferenceDomain final : public PreferenceDomain {
public:
    LinuxPreferenceDomain(std::filesystem::path file, SystemLog& log, const Clock& clock);

    /// The file of the suite's domain; empty for a user who has no place for settings.
    static std::filesystem::path extrasFile(const Directories& directories);

    PropertyValue read(std::string_view key) override;
    void write(std::string_view key, const PropertyValue& value) override;
    void synchronise() override;
    PropertyValue::Dictionary readAll() override;

    /// Another process may have written; the next read looks at the file.
    void noteChanged() noexcept { lookAgain_ = true; }

private:
    void refresh();
    void load();
    void setAsideIfStillDamaged();
    void setAside(const std::filesystem::path& file);
    PropertyValue::Dictionary valuesForWriting(const std::filesystem::path& file);

    std::filesystem::path file_;
    SystemLog& log_;
    const Clock& clock_;
    PropertyValue::Dictionary values_;
    FileStamp stamp_;    // of the file that `values_` came from
    Descriptor handle_;  // held open, so that no later file passes for that one
    double lookedAtSeconds_ = 0;
    bool lookAgain_ = true;
    bool hasUnflushedName_ = false;
};

}  // namespace vantor
