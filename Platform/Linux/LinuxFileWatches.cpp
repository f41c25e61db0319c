#include "Platform/Linux/LinuxFileWatches.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantor {
namespace {

// A file that is deleted while somebody holds it open only loses a link, which is a change of
// its attributes; its own end would be told when the last descriptor goes.
constexpr std::uint32_t kEvents = IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr int kAll = -1;  // what an overflow of the kernel's list is told for

}  // namespace

/// Whether the name still is that file's.
bool LinuxFileWatches::Watched::stays() const noexcept {
    struct stat now {};
    return stat(path.c_str(), &now) == 0 && now.st_dev == device && now.st_ino == inode;
}

class LinuxFileWatches::Handle final : public FileWatch {
public:
    Handle(LinuxFileWatches& watches, std::uint64_t id) noexcept : watches_(watches), id_(id) {}
    ~Handle() override { watches_.end(id_); }

private:
    LinuxFileWatches& watches_;
    std::uint64_t id_;
};

std::unique_ptr<FileWatch> LinuxFileWatches::add(const std::filesystem::path& path,
                                                 std::function<void()> gone) {
    struct stat file {};
    const std::scoped_lock lock(mutex_);
    if (!openDescriptor() || stat(path.c_str(), &file) != 0)
        return nullptr;
    const int watch = inotify_add_watch(descriptor_.get(), path.c_str(), kEvents);
    if (watch < 0)
        return nullptr;
    const std::uint64_t id = ++lastID_;
    watched_.push_back({id, watch, path, file.st_dev, file.st_ino,
                        std::make_shared<const std::function<void()>>(std::move(gone))});
    return std::make_unique<Handle>(*this, id);
}

/// With the lock held.
bool LinuxFileWatches::openDescriptor() {
    if (descriptor_)
        return true;
    descriptor_ = Descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (descriptor_)
        queue_.async([watches = self_.handle()] {
            if (LinuxFileWatches* const self = watches.get())
                self->lookAfterDescriptor();
        });
    return static_cast<bool>(descriptor_);
}

void LinuxFileWatches::lookAfterDescriptor() {
    descriptorWatch_ = queue_.watch(descriptor_.get(), POLLIN, [this](short) { readEvents(); });
}

void LinuxFileWatches::readEvents() {
    alignas(inotify_event) std::array<char, 4096> bytes;
    const ssize_t size = read(descriptor_.get(), bytes.data(), bytes.size());
    for (ssize_t place = 0; place < size;) {
        inotify_event event;
        std::memcpy(&event, bytes.data() + place, sizeof event);
        looked(event.wd);
        place += static_cast<ssize_t>(sizeof event + event.len);
    }
}

/// Something happened to the file of that watch.
void LinuxFileWatches::looked(int watch) {
    std::vector<std::shared_ptr<const std::function<void()>>> gone;
    {
        const std::scoped_lock lock(mutex_);
        for (Watched& watched : watched_)
            if ((watch == kAll || watched.watch == watch) && watched.gone && !watched.stays())
                gone.push_back(std::exchange(watched.gone, nullptr));
    }
    for (const auto& call : gone)  // without the lock: a call may end watches
        (*call)();
}

void LinuxFileWatches::end(std::uint64_t id) noexcept {
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find(watched_, id, &Watched::id);
    const int watch = found->watch;
    watched_.erase(found);
    if (std::ranges::find(watched_, watch, &Watched::watch) == watched_.end())
        inotify_rm_watch(descriptor_.get(), watch);  // refused where the file has gone already
}

}  // namespace vantor
