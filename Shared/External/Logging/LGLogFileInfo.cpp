#include "Shared/External/Logging/LGLogFileInfo.h"

#include <fmt/format.h>

#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/SystemLog.h"
#include "Platform/ThisProcess.h"
#include "Shared/External/Logging/LGLogFileName.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// Not all file systems keep a file's birth; its name does.
double creationDateOf(const Ports& ports, const std::filesystem::path& path, double modified) {
    if (const auto date = ports.fileSystem.creationDate(path))
        return *date;
    const auto name = logFileName(path.filename().string(), ports.thisProcess.name());
    return name ? static_cast<double>(name->time) : modified;
}

LGFileAttributes attributesOf(const Ports& ports, const std::filesystem::path& path) {
    std::error_code unreadable;
    const auto size = std::filesystem::file_size(path, unreadable);
    const double modified = ports.fileSystem.modificationDate(path).value_or(0);
    return {.creationDate = creationDateOf(ports, path, modified),
            .modificationDate = modified,
            .size = unreadable ? 0 : size};
}

}  // namespace

const LGFileAttributes& LGLogFileInfo::fileAttributes() const {
    if (!attributes_)
        attributes_ = attributesOf(*ports_, filePath_);
    return *attributes_;
}

double LGLogFileInfo::age() const { return ports_->clock.now() - creationDate(); }

bool LGLogFileInfo::isArchived() const {
    return ports_->fileSystem.hasAttribute(filePath_, kArchivedAttribute);
}

LGLogFileInfo::Marking LGLogFileInfo::setIsArchived(bool archived) {
    FileSystem& files = ports_->fileSystem;
    const std::error_code error = archived ? files.setAttribute(filePath_, kArchivedAttribute)
                                           : files.removeAttribute(filePath_, kArchivedAttribute);
    const bool wasMissing = !archived && error == std::errc::no_message_available;
    if (!error || wasMissing)
        return Marking::done;
    if (error == std::errc::not_supported)
        return Marking::unsupported;
    ports_->systemLog.write(fmt::format("LGLogFileInfo: {}({}, {}): error = {}",
                                        archived ? "setxattr" : "removexattr", filePath_.string(),
                                        kArchivedAttribute, error.message()));
    return Marking::failed;
}

void LGLogFileInfo::renameFile(std::string_view newName) {
    const std::filesystem::path newPath = filePath_.parent_path() / newName;
    if (newPath == filePath_)
        return;
    if (const std::error_code error = ports_->fileSystem.rename(filePath_, newPath))
        ports_->systemLog.write(fmt::format("LGLogFileInfo: Error renaming file ({}): {}",
                                            fileName(), error.message()));
    filePath_ = newPath;
    reset();
}

std::partial_ordering
LGLogFileInfo::reverseCompareByCreationDate(const LGLogFileInfo& other) const {
    return other.creationDate() <=> creationDate();
}

std::partial_ordering
LGLogFileInfo::reverseCompareByModificationDate(const LGLogFileInfo& other) const {
    return other.modificationDate() <=> modificationDate();
}

}  // namespace vantor::inline VANTOR_MODULE
