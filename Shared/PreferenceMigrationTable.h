#pragma once

#include <span>
#include <string_view>

namespace vantor::inline VANTOR_MODULE {

// How the previous version of the program named its settings.

struct MigratedKey {
    std::string_view formerKey, key;
};

/// Every setting that has a new name, in the order of the modules.
std::span<const MigratedKey> preferenceMigrationTable() noexcept;

/// The settings of the previous version that mean nothing to this one.
std::span<const std::string_view> keysLeftBehind() noexcept;

/// What `formerKey` is called now; a key that the table lacks keeps its name.
std::string_view migratedKey(std::string_view formerKey) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
