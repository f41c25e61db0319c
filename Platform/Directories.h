#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace vantor {

/// Port: where the user's files are. Nothing where the user has no such place. None of these
/// directories need exist. Any thread.
class Directories {
public:
    virtual ~Directories() = default;
    virtual std::optional<std::filesystem::path> applicationSupport() const = 0;
    /// The parent of the suite's log directories.
    virtual std::optional<std::filesystem::path> logs() const = 0;
    virtual std::optional<std::filesystem::path> preferences() const = 0;
    /// Where the previous version of the program may have left its settings, the likeliest first.
    virtual std::vector<std::filesystem::path> formerPreferences() const = 0;
    /// Where the program's own artwork and tables lie.
    virtual std::filesystem::path resources() const = 0;
    /// What absolute paths of the system's own files hang on; "/" but under test.
    virtual std::filesystem::path systemRoot() const = 0;
};

}  // namespace vantor
