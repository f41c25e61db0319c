#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <sys/types.h>

#include "Foundation/WeakHandle.h"
#include "Platform/FileSystem.h"
#include "Platform/Linux/Descriptor.h"
#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor {

/// Watches on files, all over one inotify descriptor, which the main queue looks after from the
/// first watch on.
/// Errors: where the kernel has no descriptor or watch left, or no such file, there is no watch.
/// Thread: made and ended on the main queue; `add` and the end of a watch anywhere. Watches end
///         before this.
class LinuxFileWatches {
public:
    explicit LinuxFileWatches(LinuxMainQueue& queue) noexcept : queue_(queue) {}
    LinuxFileWatches(const LinuxFileWatches&) = delete;
    LinuxFileWatches& operator=(const LinuxFileWatches&) = delete;

    /// `gone` is called on the main queue, at most once: the file was deleted, or bears its name
    /// no longer.
    std::unique_ptr<FileWatch> add(const std::filesystem::path& path, std::function<void()> gone);

private:
    class Handle;
    struct Watched {
        std::uint64_t id;
        int watch;  // the kernel's, one for all watches of the same file
        std::filesystem::path path;
        dev_t device;
        ino_t inode;
        std::shared_ptr<const std::function<void()>> gone;  // null once it was called

        bool stays() const noexcept;
    };

    bool openDescriptor();
    void lookAfterDescriptor();
    void readEvents();
    void looked(int watch);
    void end(std::uint64_t id) noexcept;

    LinuxMainQueue& queue_;
    LinuxMainQueue::Watch descriptorWatch_;  // the main queue's own

    std::mutex mutex_;  // guards what follows
    Descriptor descriptor_;
    std::vector<Watched> watched_;
    std::uint64_t lastID_ = 0;

    WeakSource<LinuxFileWatches> self_{*this};
};

}  // namespace vantor
