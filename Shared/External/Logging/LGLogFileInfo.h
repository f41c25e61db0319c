#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Ports.h"

namespace vantor::inline VANTOR_MODULE {

struct LGFileAttributes {
    double creationDate = 0, modificationDate = 0;  // seconds since 1970
    std::uint64_t size = 0;
};

/// What there is to know about one log file, read when it is first asked for and then kept.
/// Errors: of a file that isn't there all is 0, but for a creation date that its name tells.
class LGLogFileInfo {
public:
    static constexpr std::string_view kArchivedAttribute = "vantor.log.archived";
    enum class Marking : std::uint8_t { done, failed, unsupported };

    /// The ports outlive it.
    LGLogFileInfo(const Ports& ports, std::filesystem::path filePath)
        : ports_(&ports), filePath_(std::move(filePath)) {}

    const std::filesystem::path& filePath() const noexcept { return filePath_; }
    std::string fileName() const { return filePath_.filename().string(); }
    const LGFileAttributes& fileAttributes() const;
    double creationDate() const { return fileAttributes().creationDate; }
    double modificationDate() const { return fileAttributes().modificationDate; }
    std::uint64_t fileSize() const { return fileAttributes().size; }
    /// Seconds since its creation, until now.
    double age() const;
    /// Forgets what was read.
    void reset() noexcept { attributes_.reset(); }

    bool isArchived() const;
    /// What fails is told in the system log, unless files here can't be marked at all.
    Marking setIsArchived(bool archived);

    /// Within its folder. The new path is kept even where that fails, which the system log tells.
    void renameFile(std::string_view newName);

    /// Newest first.
    std::partial_ordering reverseCompareByCreationDate(const LGLogFileInfo& other) const;
    std::partial_ordering reverseCompareByModificationDate(const LGLogFileInfo& other) const;
    bool operator==(const LGLogFileInfo& other) const { return filePath_ == other.filePath_; }

private:
    const Ports* ports_;
    std::filesystem::path filePath_;
    mutable std::optional<LGFileAttributes> attributes_;
};

}  // namespace vantor::inline VANTOR_MODULE
