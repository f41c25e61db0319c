#include "Platform/Simulated/SimulatedFileSystem.h"

#include <fstream>
#include <utility>

namespace vantor::simulated {
namespace {

namespace fs = std::filesystem;

class SimulatedAppendingFile final : public AppendingFile {
public:
    SimulatedAppendingFile(SimulatedFileSystem& files, fs::path path, std::uint64_t size)
        : files_(files), path_(std::move(path)), stream_(path_, std::ios::binary | std::ios::app),
          offset_(size) {}

    bool isOpen() const { return stream_.is_open(); }
    std::error_code append(std::string_view bytes) override {
        if (files_.full())
            return std::make_error_code(std::errc::no_space_on_device);
        if (!(stream_ << bytes << std::flush))
            return std::make_error_code(std::errc::io_error);
        offset_ += bytes.size();
        files_.noteModified(path_);
        return {};
    }
    std::uint64_t offset() const noexcept override { return offset_; }
    std::error_code synchronise() override { return {}; }

private:
    SimulatedFileSystem& files_;
    fs::path path_;
    std::ofstream stream_;
    std::uint64_t offset_;
};

}  // namespace

class SimulatedFileSystem::Handle final : public FileWatch {
public:
    explicit Handle(SimulatedFileSystem& files) noexcept : files_(files) {}
    ~Handle() override { files_.watched_.erase(this); }

private:
    SimulatedFileSystem& files_;
};

void SimulatedFileSystem::deleteFile(const fs::path& path) {
    fs::remove(path);
    entries_.erase(path);
    tellWatches(path);
}

void SimulatedFileSystem::moveFile(const fs::path& from, const fs::path& to) {
    if (!rename(from, to))
        tellWatches(from);
}

void SimulatedFileSystem::setCreationDate(const fs::path& path, double date) {
    entries_[path].created = date;
}

void SimulatedFileSystem::noteModified(const fs::path& path) {
    entries_[path].modified = clock_.now();
}

void SimulatedFileSystem::tellWatches(const fs::path& path) {
    for (const auto& [handle, watched] : watched_)
        if (watched.path == path)
            queue_.async([gone = watched.gone] { gone(); });
}

const SimulatedFileSystem::Entry* SimulatedFileSystem::entry(const fs::path& path) const {
    const auto found = entries_.find(path);
    return found != entries_.end() && fs::exists(path) ? &found->second : nullptr;
}

std::error_code SimulatedFileSystem::createFile(const fs::path& path) {
    if (fs::exists(path))
        return std::make_error_code(std::errc::file_exists);
    if (!std::ofstream(path))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    entries_[path] = {clock_.now(), clock_.now(), {}};
    return {};
}

std::unique_ptr<AppendingFile> SimulatedFileSystem::openForAppending(const fs::path& path,
                                                                     std::error_code& error) {
    const auto size = fs::file_size(path, error);
    if (error)
        return nullptr;
    auto file = std::make_unique<SimulatedAppendingFile>(*this, path, size);
    if (!file->isOpen())
        error = std::make_error_code(std::errc::permission_denied);
    return error ? nullptr : std::move(file);
}

std::error_code SimulatedFileSystem::rename(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error)
        return error;
    entries_.erase(to);
    if (auto moved = entries_.extract(from)) {
        moved.key() = to;
        entries_.insert(std::move(moved));
    }
    return {};
}

std::optional<double> SimulatedFileSystem::creationDate(const fs::path& path) const {
    const Entry* const found = entry(path);
    return found != nullptr ? std::optional(found->created) : std::nullopt;
}

std::optional<double> SimulatedFileSystem::modificationDate(const fs::path& path) const {
    const Entry* const found = entry(path);
    return found != nullptr ? std::optional(found->modified) : std::nullopt;
}

bool SimulatedFileSystem::hasAttribute(const fs::path& path, std::string_view name) const {
    const Entry* const found = entry(path);
    return found != nullptr && found->attributes.contains(name);
}

std::error_code SimulatedFileSystem::setAttribute(const fs::path& path, std::string_view name) {
    if (!fs::exists(path))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (!keepsAttributes_)
        return std::make_error_code(std::errc::not_supported);
    entries_[path].attributes.emplace(name);
    return {};
}

std::error_code SimulatedFileSystem::removeAttribute(const fs::path& path, std::string_view name) {
    if (!fs::exists(path))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    return entries_[path].attributes.erase(std::string(name)) > 0
               ? std::error_code{}
               : std::make_error_code(std::errc::no_message_available);
}

std::unique_ptr<FileWatch> SimulatedFileSystem::watch(const fs::path& path,
                                                      std::function<void()> gone) {
    auto handle = std::make_unique<Handle>(*this);
    watched_.insert_or_assign(handle.get(), Watched{path, std::move(gone)});
    return handle;
}

}  // namespace vantor::simulated
