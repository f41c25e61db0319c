// A library that is loaded before a program's own (LD_PRELOAD) and lets chosen calls that change
// files go wrong. The environment says which:
//   FILE_FAULTS_IN     only files whose path holds this text are looked at
//   FILE_FAULTS_KIND   "kill" before the call, "slow" for 5 seconds before a flush, or the error
//                      that the call gives instead: ENOSPC, EIO, EROFS or EACCES
//   FILE_FAULTS_AT     the first such call that goes wrong, counted from 1
//   FILE_FAULTS_LAST   the last one; the same, if it isn't named
//   FILE_FAULTS_COUNT  a file that gets the number of calls when the process ends in good order
// A process can end all faults by the function `endFileFaults`.

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr unsigned kSlowFlushSeconds = 5;

long numberFrom(const char* variable, long otherwise) noexcept {
    const char* const text = std::getenv(variable);
    return text == nullptr ? otherwise : std::strtol(text, nullptr, 10);
}

std::string_view textFrom(const char* variable) noexcept {
    const char* const text = std::getenv(variable);
    return text == nullptr ? "" : text;
}

struct Plan {
    std::string_view where = textFrom("FILE_FAULTS_IN"), kind = textFrom("FILE_FAULTS_KIND");
    long first = numberFrom("FILE_FAULTS_AT", 0);
    long last = numberFrom("FILE_FAULTS_LAST", first);
    std::atomic<long> calls = 0;
    std::atomic<bool> isOver = false;

    ~Plan() { writeCount(); }
    void writeCount() const noexcept {
        const char* const file = std::getenv("FILE_FAULTS_COUNT");
        std::FILE* const stream = file == nullptr ? nullptr : std::fopen(file, "w");
        if (stream == nullptr)
            return;
        std::fprintf(stream, "%ld\n", calls.load());
        std::fclose(stream);
    }
};

Plan& plan() noexcept {
    static Plan thePlan;
    return thePlan;
}

bool isWatched(std::string_view path) noexcept {
    const std::string_view where = plan().where;
    return !where.empty() && path.find(where) != path.npos;
}

bool isWatched(int descriptor) noexcept {
    char link[64], path[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const int before = errno;
    const ssize_t size = readlink(link, path, sizeof path);
    errno = before;
    return size > 0 && isWatched(std::string_view(path, static_cast<std::size_t>(size)));
}

int errorOf(std::string_view kind) noexcept {
    if (kind == "ENOSPC")
        return ENOSPC;
    if (kind == "EROFS")
        return EROFS;
    if (kind == "EACCES")
        return EACCES;
    return EIO;
}

/// Whether the call is to fail; `errno` is set then. Doesn't come back from "kill".
bool goesWrong(auto watched) noexcept {
    Plan& faults = plan();
    if (faults.isOver || faults.kind == "slow" || !isWatched(watched))
        return false;
    const long call = ++faults.calls;
    if (faults.first == 0 || call < faults.first || call > faults.last)
        return false;
    if (faults.kind == "kill")
        kill(getpid(), SIGKILL);
    errno = errorOf(faults.kind);
    return true;
}

void waitIfSlow(int descriptor) noexcept {
    if (plan().kind == "slow" && !plan().isOver && isWatched(descriptor)) {
        ++plan().calls;
        sleep(kSlowFlushSeconds);
    }
}

/// The function that ours stands before.
template <class Function>
Function* next(const char* name) noexcept {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int openNext(const char* path, int flags, mode_t mode) noexcept {
    static auto* const real = next<int(const char*, int, ...)>("open64");
    const bool changes = (flags & (O_CREAT | O_TRUNC)) != 0;
    return changes && goesWrong(std::string_view(path)) ? -1 : real(path, flags, mode);
}

mode_t modeFrom(int flags, va_list arguments) noexcept {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

#define OURS extern "C" __attribute__((visibility("default")))

OURS void endFileFaults() { plan().isOver = true; }

OURS int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(flags, arguments);
    va_end(arguments);
    return openNext(path, flags, mode);
}

OURS int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(flags, arguments);
    va_end(arguments);
    return openNext(path, flags, mode);
}

OURS ssize_t write(int descriptor, const void* bytes, size_t size) {
    static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
    return goesWrong(descriptor) ? -1 : real(descriptor, bytes, size);
}

OURS ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t offset) {
    static auto* const real = next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return goesWrong(descriptor) ? -1 : real(descriptor, bytes, size, offset);
}

OURS ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off64_t offset) {
    static auto* const real = next<ssize_t(int, const void*, size_t, off64_t)>("pwrite64");
    return goesWrong(descriptor) ? -1 : real(descriptor, bytes, size, offset);
}

OURS int ftruncate(int descriptor, off_t size) noexcept {
    static auto* const real = next<int(int, off_t)>("ftruncate");
    return goesWrong(descriptor) ? -1 : real(descriptor, size);
}

OURS int ftruncate64(int descriptor, off64_t size) noexcept {
    static auto* const real = next<int(int, off64_t)>("ftruncate64");
    return goesWrong(descriptor) ? -1 : real(descriptor, size);
}

OURS int fsync(int descriptor) {
    static auto* const real = next<int(int)>("fsync");
    waitIfSlow(descriptor);
    return goesWrong(descriptor) ? -1 : real(descriptor);
}

OURS int fdatasync(int descriptor) {
    static auto* const real = next<int(int)>("fdatasync");
    waitIfSlow(descriptor);
    return goesWrong(descriptor) ? -1 : real(descriptor);
}

OURS int unlink(const char* path) noexcept {
    static auto* const real = next<int(const char*)>("unlink");
    return goesWrong(std::string_view(path)) ? -1 : real(path);
}

OURS int remove(const char* path) noexcept {
    static auto* const real = next<int(const char*)>("remove");
    return goesWrong(std::string_view(path)) ? -1 : real(path);
}

OURS int rename(const char* from, const char* to) noexcept {
    static auto* const real = next<int(const char*, const char*)>("rename");
    return goesWrong(std::string_view(from)) ? -1 : real(from, to);
}

OURS int mkdir(const char* path, mode_t mode) noexcept {
    static auto* const real = next<int(const char*, mode_t)>("mkdir");
    return goesWrong(std::string_view(path)) ? -1 : real(path, mode);
}
