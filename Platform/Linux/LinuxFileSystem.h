#pragma once

#include "Platform/FileSystem.h"

namespace vantor {

class LinuxFileWatches;

/// Attributes are stored as extended ones, in the users' own space: "user." stands before the
/// name. What is appended goes behind the file's end, whoever else writes there.
class LinuxFileSystem final : public FileSystem {
public:
    /// `watches` outlives it.
    explicit LinuxFileSystem(LinuxFileWatches& watches) noexcept : watches_(watches) {}

    std::error_code createFile(const std::filesystem::path& path) override;
    std::unique_ptr<AppendingFile> openForAppending(const std::filesystem::path& path,
                                                    std::error_code& error) override;
    std::error_code rename(const std::filesystem::path& from,
                           const std::filesystem::path& to) override;
    std::optional<double> creationDate(const std::filesystem::path& path) const override;
    std::optional<double> modificationDate(const std::filesystem::path& path) const override;
    bool hasAttribute(const std::filesystem::path& path, std::string_view name) const override;
    std::error_code setAttribute(const std::filesystem::path& path, std::string_view name) override;
    std::error_code removeAttribute(const std::filesystem::path& path,
                                    std::string_view name) override;
    std::unique_ptr<FileWatch> watch(const std::filesystem::path& path,
                                     std::function<void()> gone) override;

private:
    LinuxFileWatches& watches_;
};

}  // namespace vantor
