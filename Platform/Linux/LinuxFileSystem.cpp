#include "Platform/Linux/LinuxFileSystem.h"

#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "Platform/Linux/Descriptor.h"
#include "Platform/Linux/LinuxFileWatches.h"

namespace vantor {
namespace {

constexpr mode_t kFileMode = 0644;

std::error_code lastError() noexcept { return {errno, std::generic_category()}; }
/// Of a call that answers 0 where it succeeds.
std::error_code errorOf(int result) noexcept {
    return result == 0 ? std::error_code{} : lastError();
}

std::string attributeName(std::string_view name) { return "user." + std::string(name); }

double secondsOf(const statx_timestamp& time) noexcept {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::optional<double> dateOf(const std::filesystem::path& path, unsigned mask,
                             statx_timestamp(statx::*date)) {
    struct statx file {};
    if (statx(AT_FDCWD, path.c_str(), AT_STATX_SYNC_AS_STAT, mask, &file) != 0 ||
        (file.stx_mask & mask) == 0)
        return std::nullopt;
    return secondsOf(file.*date);
}

class LinuxAppendingFile final : public AppendingFile {
public:
    LinuxAppendingFile(Descriptor descriptor, off_t end) noexcept
        : descriptor_(std::move(descriptor)), offset_(end) {}

    std::error_code append(std::string_view bytes) override {
        std::error_code error;
        while (!bytes.empty() && !error) {
            const ssize_t written = write(descriptor_.get(), bytes.data(), bytes.size());
            if (written >= 0)
                bytes.remove_prefix(static_cast<std::size_t>(written));
            else if (errno != EINTR)
                error = lastError();
        }
        // Others may have written, too. What has no place, as a device, counts nothing.
        offset_ = lseek(descriptor_.get(), 0, SEEK_CUR);
        return error;
    }
    std::uint64_t offset() const noexcept override {
        return offset_ > 0 ? static_cast<std::uint64_t>(offset_) : 0;
    }
    std::error_code synchronise() override { return errorOf(fsync(descriptor_.get())); }

private:
    Descriptor descriptor_;
    off_t offset_;
};

}  // namespace

std::error_code LinuxFileSystem::createFile(const std::filesystem::path& path) {
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode));
    return file ? std::error_code{} : lastError();
}

std::unique_ptr<AppendingFile> LinuxFileSystem::openForAppending(const std::filesystem::path& path,
                                                                 std::error_code& error) {
    // A pipe without a reader is an error here, not something to wait for.
    Descriptor file(open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK));
    error = file ? std::error_code{} : lastError();
    if (error)
        return nullptr;
    const off_t end = lseek(file.get(), 0, SEEK_END);
    return std::make_unique<LinuxAppendingFile>(std::move(file), end);
}

std::error_code LinuxFileSystem::rename(const std::filesystem::path& from,
                                        const std::filesystem::path& to) {
    std::error_code error;
    std::filesystem::rename(from, to, error);
    return error;
}

std::optional<double> LinuxFileSystem::creationDate(const std::filesystem::path& path) const {
    return dateOf(path, STATX_BTIME, &statx::stx_btime);
}

std::optional<double> LinuxFileSystem::modificationDate(const std::filesystem::path& path) const {
    return dateOf(path, STATX_MTIME, &statx::stx_mtime);
}

bool LinuxFileSystem::hasAttribute(const std::filesystem::path& path, std::string_view name) const {
    return getxattr(path.c_str(), attributeName(name).c_str(), nullptr, 0) >= 0;
}

std::error_code LinuxFileSystem::setAttribute(const std::filesystem::path& path,
                                              std::string_view name) {
    return errorOf(setxattr(path.c_str(), attributeName(name).c_str(), "", 0, 0));
}

std::error_code LinuxFileSystem::removeAttribute(const std::filesystem::path& path,
                                                 std::string_view name) {
    return errorOf(removexattr(path.c_str(), attributeName(name).c_str()));
}

std::unique_ptr<FileWatch> LinuxFileSystem::watch(const std::filesystem::path& path,
                                                  std::function<void()> gone) {
    return watches_.add(path, std::move(gone));
}

}  // namespace vantor
