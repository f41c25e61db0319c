#include "Platform/Linux/LinuxProcessSource.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <ctime>
#include <optional>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "Platform/Linux/ProcessNames.h"
#include "Platform/Linux/ProcessTexts.h"

namespace vantor {
namespace {

constexpr std::size_t kListingBytes = 32 * 1024;
// A "stat" is never longer than half of this. Of arguments only the first few are looked at.
constexpr std::size_t kTextBytes = 4096;
constexpr std::size_t kPathBytes = 32;

/// "123/stat" with its zero byte, in place.
class ProcessPath {
public:
    ProcessPath(std::int32_t id, std::string_view file) noexcept {
        char* const end = std::to_chars(path_.data(), path_.data() + kPathBytes, id).ptr;
        *end = '/';
        *std::copy(file.begin(), file.end(), end + 1) = '\0';
    }
    const char* get() const noexcept { return path_.data(); }

private:
    std::array<char, kPathBytes> path_;
};

std::optional<std::int32_t> numberIn(std::string_view name) noexcept {
    std::int32_t number = 0;
    const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool isWhole = error == std::errc{} && stop == name.data() + name.size();
    return isWhole && number > 0 ? std::optional(number) : std::nullopt;
}

ssize_t readOnce(int descriptor, std::vector<char>& into) noexcept {
    ssize_t count = -1;
    do
        count = ::read(descriptor, into.data(), into.size());
    while (count < 0 && errno == EINTR);
    return count;
}

/// FNV-1a: which application it is, in place of its path.
ApplicationID identityOf(std::string_view path) noexcept {
    std::uint64_t hash = 0xCBF2'9CE4'8422'2325;
    for (const char letter : path)
        hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100'0000'01B3;
    return path.empty() ? ApplicationID::none : ApplicationID{std::max(hash, std::uint64_t{1})};
}

}  // namespace

LinuxProcessSource::LinuxProcessSource(const Clock& clock, const std::filesystem::path& proc)
    : clock_(clock), path_(proc.string()),
      ticksPerSecond_(static_cast<double>(sysconf(_SC_CLK_TCK))), listing_(kListingBytes),
      text_(kTextBytes), link_(kTextBytes) {}

std::uint64_t LinuxProcessSource::ticksSinceBoot() const noexcept {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);  // as starts are counted: with the time asleep
    const double seconds =
        static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    return static_cast<std::uint64_t>(std::floor(seconds * ticksPerSecond_));
}

bool LinuxProcessSource::read(std::vector<ProcessReading>& into) {
    into.clear();
    if (!listNumbers())
        return false;
    for (const std::int32_t id : numbers_)
        if (ProcessReading process; readProcess(id, process))
            into.push_back(process);
    return true;
}

/// Fills `numbers_`, by rising number.
bool LinuxProcessSource::listNumbers() {
    numbers_.clear();
    if (!folder_)
        folder_ = Descriptor(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder_ || ::lseek(folder_.get(), 0, SEEK_SET) != 0)
        return false;
    ssize_t size = 0;
    while ((size = ::getdents64(folder_.get(), listing_.data(), listing_.size())) > 0)
        addNumbersIn(static_cast<std::size_t>(size));
    // The kernel's own listing is in order; any other is put in it.
    if (!std::ranges::is_sorted(numbers_))
        std::ranges::sort(numbers_);
    return size == 0;
}

void LinuxProcessSource::addNumbersIn(std::size_t listingBytes) {
    for (std::size_t at = 0; at < listingBytes;) {
        const auto& entry = *reinterpret_cast<const dirent64*>(listing_.data() + at);
        if (const auto number = numberIn(entry.d_name))
            numbers_.push_back(*number);
        at += entry.d_reclen;
    }
}

bool LinuxProcessSource::readProcess(std::int32_t id, ProcessReading& into) noexcept {
    const auto process = processIn(readText(id, "stat"));
    if (!process || process->id != id)
        return false;
    into = *process;
    into.time = clock_.monotonic();
    return true;
}

/// The text, or "" where there is none (any more); good until the next one is read.
std::string_view LinuxProcessSource::readText(std::int32_t id, std::string_view file) noexcept {
    const ProcessPath path(id, file);
    const Descriptor opened(::openat(folder_.get(), path.get(), O_RDONLY | O_CLOEXEC));
    const ssize_t size = opened ? readOnce(opened.get(), text_) : -1;
    return {text_.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

/// The file of the program that `id` runs, or "" where that isn't ours to know.
std::string_view LinuxProcessSource::readExe(std::int32_t id) noexcept {
    const ProcessPath path(id, "exe");
    const ssize_t size = ::readlinkat(folder_.get(), path.get(), link_.data(), link_.size());
    return {link_.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

// A process that ended since its reading isn't taken for another one here: its number comes
// round again only after all the others.

std::string LinuxProcessSource::displayName(const ProcessReading& process) {
    NameSources sources{.kernelName = process.name(), .cmdline = {}, .exe = {}};
    if (!process.isKernelThread) {
        sources.cmdline = readText(process.id, "cmdline");
        if (isCut(sources.kernelName))
            sources.exe = readExe(process.id);
    }
    const std::string_view name = knownName(sources);
    return name.empty() ? fmt::format("({})", process.id) : readable(name);
}

ApplicationID LinuxProcessSource::application(const ProcessReading& process) {
    return identityOf(applicationPathIn(readText(process.id, "cgroup")));
}

}  // namespace vantor
