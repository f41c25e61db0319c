#include "Platform/Linux/KernelFile.h"

#include <cerrno>
#include <cstddef>
#include <new>

#include <fcntl.h>
#include <unistd.h>

namespace vantor {
namespace {

constexpr std::size_t kSmallestBytes = 4096;
constexpr std::size_t kLargestBytes = std::size_t{16} << 20;  // 8,192 CPUs need 2 MiB

}  // namespace

KernelFile::KernelFile(const std::filesystem::path& path)
    : path_(path.string()), buffer_(kSmallestBytes) {
    // Half of it stays free, because counters gain digits and CPUs come back.
    for (auto text = read(); text && text->size() > buffer_.size() / 2; text = read())
        if (!grow())
            break;
}

std::optional<std::string_view> KernelFile::read() noexcept {
    while (open()) {
        const ssize_t count = ::pread(descriptor_.get(), buffer_.data(), buffer_.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            descriptor_.reset();
            break;
        }
        const auto size = static_cast<std::size_t>(count);
        if (size < buffer_.size() || !grow())
            return std::string_view(buffer_.data(), size);
    }
    return std::nullopt;
}

bool KernelFile::open() noexcept {
    if (!descriptor_)
        descriptor_ = Descriptor(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    return static_cast<bool>(descriptor_);
}

bool KernelFile::grow() noexcept {
    if (buffer_.size() >= kLargestBytes)
        return false;
    try {
        buffer_.resize(buffer_.size() * 2);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

}  // namespace vantor
