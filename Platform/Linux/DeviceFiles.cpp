#include "Platform/Linux/DeviceFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

#include "Platform/Linux/Descriptor.h"

namespace vantor {

std::optional<std::string> DeviceFiles::text(const std::string& path) {
    std::array<char, 512> buffer;
    const auto bytes = read(path, buffer);
    if (!bytes || bytes->size() == buffer.size())
        return std::nullopt;
    return std::string(trimmedText(*bytes));
}

std::optional<std::uint64_t> DeviceFiles::count(const std::string& path) noexcept {
    std::array<char, 64> buffer;
    const auto bytes = read(path, buffer);
    return bytes && bytes->size() < buffer.size() ? wholeCount(*bytes) : std::nullopt;
}

std::optional<std::string_view> SystemDeviceFiles::read(const std::string& path,
                                                        std::span<char> into) noexcept {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::size_t size = 0;
    while (file && size < into.size()) {
        const ssize_t count = ::read(file.get(), into.data() + size, into.size() - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return std::string_view(into.data(), size);
        size += static_cast<std::size_t>(count);
    }
    return file ? std::optional(std::string_view(into.data(), size)) : std::nullopt;
}

bool SystemDeviceFiles::exists(const std::string& path) noexcept {
    return ::access(path.c_str(), F_OK) == 0;
}

std::vector<std::string> SystemDeviceFiles::names(const std::string& folder) {
    namespace fs = std::filesystem;
    std::vector<std::string> names;
    std::error_code error;  // a folder that can't be read is empty
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename().string());
    std::ranges::sort(names);
    return names;
}

std::optional<std::string> SystemDeviceFiles::linkTarget(const std::string& path) {
    std::error_code error;
    const auto target = std::filesystem::read_symlink(path, error);
    return error ? std::nullopt : std::optional(target.string());
}

std::optional<std::uint64_t> wholeCount(std::string_view text, int base) noexcept {
    const std::string_view digits = trimmedText(text);
    std::uint64_t count = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, count, base);
    return result.ec == std::errc{} && result.ptr == end ? std::optional(count) : std::nullopt;
}

}  // namespace vantor
