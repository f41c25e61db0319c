#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

/// What became of the settings of the program's previous version.
struct PreferenceMigration {
    enum class Outcome {
        noFormerSettings,
        alreadyMigrated,
        damaged,  // nothing was carried over, and another time may find the file mended
        carriedOver
    };
    Outcome outcome = Outcome::noFormerSettings;
    std::filesystem::path formerSettings;  // the file
    std::vector<std::string> carriedOver;  // keys of this version
    std::vector<std::string> dropped;      // keys of the previous version
    std::string failure;                   // why one couldn't be stored, or ""
};

}  // namespace vantor::inline VANTOR_MODULE
