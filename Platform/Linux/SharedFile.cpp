#include "Platform/Linux/SharedFile.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr off_t kMostBytes = off_t{16} << 20;
constexpr int kMostLinks = 40;
constexpr int kLockAttempts = 1'000;
constexpr std::chrono::milliseconds kLockPause{5};

[[noreturn]] void throwFailure(std::string_view operation, const fs::path& file) {
    const int error = errno;  // before formatting can change it
    throw std::system_error(error, std::generic_category(),
                            fmt::format("can't {} \"{}\"", operation, file.string()));
}

fs::path withSuffix(const fs::path& file, std::string_view suffix) {
    return file.parent_path() / (file.filename().string() + std::string(suffix));
}

FileStamp stampFrom(const struct stat& status) noexcept {
    return {0, status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

bool sameTime(const timespec& one, const timespec& other) noexcept {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

// --- Reading -----------------------------------------------------------------------------------

FileReading unreadable(const FileStamp& stamp, std::string reason) {
    FileReading reading;
    reading.state = FileReading::State::unreadable;
    reading.reason = std::move(reason);
    reading.stamp = stamp;
    return reading;
}

FileReading unreadable(const FileStamp& stamp, int error) {
    return unreadable(stamp, std::generic_category().message(error));
}

FileReading notThere(int error) {
    const FileStamp stamp{.error = error};
    if (error != ENOENT && error != ENOTDIR)
        return unreadable(stamp, error);
    FileReading reading;
    reading.stamp = stamp;
    return reading;
}

/// All of the file; one that shrinks meanwhile ends early, which its reader finds out.
bool readAll(int descriptor, std::string& into) {
    std::size_t filled = 0;
    while (filled < into.size()) {
        const ssize_t count = ::read(descriptor, into.data() + filled, into.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    into.resize(filled);
    return true;
}

// --- Replacing ---------------------------------------------------------------------------------

/// The file that is about to take another's place; removed again unless it does.
class NextFile {
public:
    explicit NextFile(fs::path path) : path_(std::move(path)) {
        // Only a holder of the lock comes here, so one that is there is what a crash left.
        if (::unlink(path_.c_str()) != 0 && errno != ENOENT)
            throwFailure("remove", path_);
        handle_ = Descriptor(
            ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
        if (!handle_)
            throwFailure("create", path_);
    }
    ~NextFile() {
        if (!placed_)
            ::unlink(path_.c_str());  // failing leaves a file that the next writer removes
    }
    NextFile(const NextFile&) = delete;
    NextFile& operator=(const NextFile&) = delete;

    void keepOwnerAndMode(const fs::path& of) const {
        struct stat old {};
        if (::stat(of.c_str(), &old) != 0)
            return;
        // Only an administrator can give a file away; for others it becomes their own, as any
        // file does that they replace in a directory of theirs.
        const int ignored = ::fchown(handle_.get(), old.st_uid, old.st_gid);
        static_cast<void>(ignored);
        if (::fchmod(handle_.get(), old.st_mode & 07777) != 0)
            throwFailure("set the mode of", path_);
    }

    void write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::write(handle_.get(), bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                throwFailure("write", path_);
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        // Before the name changes: else a power cut could leave the new name on an empty file.
        if (::fsync(handle_.get()) != 0)
            throwFailure("flush", path_);
    }

    void takePlaceOf(const fs::path& file) {
        if (::rename(path_.c_str(), file.c_str()) != 0)
            throwFailure("replace", file);
        placed_ = true;
    }

private:
    fs::path path_;
    Descriptor handle_;
    bool placed_ = false;
};

std::string damagedSuffix(double now) {
    using namespace std::chrono;
    const sys_seconds time{seconds(static_cast<std::int64_t>(std::floor(now)))};
    const auto midnight = floor<days>(time);
    const year_month_day day(midnight);
    const hh_mm_ss clock(time - midnight);
    return fmt::format(".damaged-{:04}{:02}{:02}-{:02}{:02}{:02}", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                       clock.hours().count(), clock.minutes().count(), clock.seconds().count());
}

}  // namespace

bool operator==(const FileStamp& one, const FileStamp& other) noexcept {
    return one.error == other.error && one.device == other.device && one.inode == other.inode &&
           one.sizeBytes == other.sizeBytes && sameTime(one.modified, other.modified) &&
           sameTime(one.changed, other.changed);
}

FileStamp stampOf(const fs::path& file) noexcept {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 ? stampFrom(status) : FileStamp{.error = errno};
}

FileReading readSharedFile(const fs::path& file) {
    // Looked at before it is opened: to open some devices is to set them off.
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        return notThere(errno);
    if (!S_ISREG(status.st_mode))
        return unreadable(stampFrom(status), "it isn't a regular file");
    Descriptor handle(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!handle)
        return errno == ENOENT ? notThere(errno) : unreadable(stampFrom(status), errno);
    if (::fstat(handle.get(), &status) != 0)
        return unreadable(FileStamp{}, errno);
    if (!S_ISREG(status.st_mode))
        return unreadable(stampFrom(status), "it isn't a regular file");
    if (status.st_size > kMostBytes)
        return unreadable(stampFrom(status), "it is too large");
    FileReading reading;
    reading.bytes.resize(static_cast<std::size_t>(status.st_size));
    if (!readAll(handle.get(), reading.bytes))
        return unreadable(stampFrom(status), errno);
    reading.state = FileReading::State::whole;
    reading.stamp = stampFrom(status);
    reading.handle = std::move(handle);
    return reading;
}

fs::path withoutLinks(fs::path file) {
    std::error_code none;  // whatever stands in the way shows when the file is used
    for (int followed = 0; followed < kMostLinks && fs::is_symlink(file, none); ++followed) {
        const fs::path target = fs::read_symlink(file, none);
        if (none)
            break;
        file = file.parent_path() / target;  // an absolute target stands alone
    }
    return file;
}

void makeDirectories(const fs::path& directory) {
    if (directory.empty() || ::mkdir(directory.c_str(), S_IRWXU) == 0 || errno == EEXIST)
        return;
    if (errno != ENOENT)
        throwFailure("create", directory);
    makeDirectories(directory.parent_path());
    if (::mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        throwFailure("create", directory);
}

SharedFileLock::SharedFileLock(const fs::path& file) {
    const fs::path path = withSuffix(file, ".lock");
    // Readable by all, so that a lock file that an administrator made doesn't lock the user out.
    handle_ =
        Descriptor(::open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                          S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH));
    if (!handle_)
        throwFailure("open", path);
    // A plain flock would wait for ever behind a writer that was stopped.
    for (int attempt = 0; ::flock(handle_.get(), LOCK_EX | LOCK_NB) != 0; ++attempt) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || attempt == kLockAttempts)
            throwFailure("lock", path);
        std::this_thread::sleep_for(kLockPause);
    }
}

void replaceSharedFile(const fs::path& file, std::string_view bytes) {
    NextFile next(withSuffix(file, ".new"));
    next.keepOwnerAndMode(file);
    next.write(bytes);
    next.takePlaceOf(file);
}

void flushDirectory(const fs::path& directory) {
    const fs::path path = directory.empty() ? fs::path(".") : directory;
    const Descriptor handle(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!handle || ::fsync(handle.get()) != 0)
        throwFailure("flush", path);
}

fs::path setAsideSharedFile(const fs::path& file, double now) {
    const std::string stem = file.stem().string() + damagedSuffix(now);
    fs::path aside = file.parent_path() / (stem + file.extension().string());
    for (int copy = 2; fs::exists(fs::symlink_status(aside)); ++copy)
        aside = file.parent_path() / fmt::format("{}-{}{}", stem, copy, file.extension().string());
    if (::rename(file.c_str(), aside.c_str()) != 0)
        throwFailure("set aside", file);
    return aside;
}

}  // namespace vantor
