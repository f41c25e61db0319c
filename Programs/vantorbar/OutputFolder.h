#pragma once

#include <filesystem>
#include <string_view>

namespace vantor {

/// A folder that is filled out of sight and appears whole: until `publish` nothing of it stands
/// under its name. Publishing into a folder that is there replaces what has the same name.
/// Errors: everything throws std::filesystem::filesystem_error or std::system_error.
class OutputFolder {
public:
    /// Makes the hidden folder, beside the one it is to become.
    explicit OutputFolder(std::filesystem::path destination);
    /// Throws away what wasn't published.
    ~OutputFolder();
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

    /// Where to write.
    const std::filesystem::path& path() const noexcept { return staging_; }
    void writeFile(std::string_view name, std::string_view contents) const;
    void publish();

private:
    std::filesystem::path destination_, staging_;
};

}  // namespace vantor
