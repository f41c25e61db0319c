#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/MainQueue.h"

namespace vantor::simulated {

/// Real files with the dates of a scripted clock; dates and attributes are kept here. A file that
/// nobody made through this has neither.
/// Thread: the test's.
class SimulatedFileSystem final : public FileSystem {
public:
    SimulatedFileSystem(const Clock& clock, MainQueue& queue) noexcept
        : clock_(clock), queue_(queue) {}

    /// Somebody else deletes or renames the file; who watches it hears of it.
    void deleteFile(const std::filesystem::path& path);
    void moveFile(const std::filesystem::path& from, const std::filesystem::path& to);
    void setCreationDate(const std::filesystem::path& path, double date);
    /// From now on nothing can be appended.
    void setFull(bool full) noexcept { full_ = full; }
    /// A file system without attributes.
    void setKeepsAttributes(bool keeps) noexcept { keepsAttributes_ = keeps; }
    bool full() const noexcept { return full_; }

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
    void noteModified(const std::filesystem::path& path);

private:
    class Handle;
    struct Entry {
        double created = 0, modified = 0;
        std::set<std::string, std::less<>> attributes;
    };
    struct Watched {
        std::filesystem::path path;
        std::function<void()> gone;
    };

    const Entry* entry(const std::filesystem::path& path) const;
    void tellWatches(const std::filesystem::path& path);

    const Clock& clock_;
    MainQueue& queue_;
    std::map<std::filesystem::path, Entry> entries_;
    std::map<const Handle*, Watched> watched_;
    bool full_ = false, keepsAttributes_ = true;
};

}  // namespace vantor::simulated
