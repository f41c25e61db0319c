#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <sys/types.h>
#include <time.h>

#include "Platform/Linux/Descriptor.h"

namespace vantor {

// A small file that several processes read, and replace whole while they hold its lock.
// Errors: what changes something throws std::system_error with the operation and the reason.

/// What tells one state of a file from the next, or why there is none to be seen.
struct FileStamp {
    int error = 0;
    dev_t device = 0;
    ino_t inode = 0;
    off_t sizeBytes = 0;
    timespec modified{}, changed{};
    friend bool operator==(const FileStamp& one, const FileStamp& other) noexcept;
};

FileStamp stampOf(const std::filesystem::path& file) noexcept;

struct FileReading {
    enum class State { absent, whole, unreadable };
    State state = State::absent;
    std::string bytes;   // of a whole one
    std::string reason;  // of an unreadable one
    FileStamp stamp;
    Descriptor handle;  // while it lives, no later file gets the same inode number
};

/// What is there now. Never waits: a pipe or device in the file's place is unreadable, and so is
/// a file of more than 16 MiB.
FileReading readSharedFile(const std::filesystem::path& file);

/// The path behind all symbolic links, whether or not a file is there.
std::filesystem::path withoutLinks(std::filesystem::path file);

/// Makes the missing directories, for the user alone.
void makeDirectories(const std::filesystem::path& directory);

/// Holds the right to replace `file`, by way of "FILE.lock" beside it, which stays when it ends:
/// removing it would let two writers hold two locks. Waits five seconds for another holder.
class SharedFileLock {
public:
    explicit SharedFileLock(const std::filesystem::path& file);

private:
    Descriptor handle_;
};

/// Puts `bytes` in the place of `file`: at every moment, and after a crash or a power cut, one or
/// the other is there whole. A new file is the user's alone; an old one's mode and owner are kept.
/// The caller holds the lock. `flushDirectory` makes it certain that it is the new one.
void replaceSharedFile(const std::filesystem::path& file, std::string_view bytes);
void flushDirectory(const std::filesystem::path& directory);

/// Gives `file` another name in its directory, never that of an earlier one:
/// "NAME.damaged-YYYYMMDD-HHMMSS.plist" for "NAME.plist", in UTC. Returns the new path. The caller
/// holds the lock.
std::filesystem::path setAsideSharedFile(const std::filesystem::path& file, double now);

}  // namespace vantor
