#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/KernelText.h"

namespace vantor {

/// How the kernel's files about devices are read. Each reading opens, reads and closes: a
/// descriptor that stays open keeps some devices awake. Tests count the readings.
/// Errors: what can't be read, vanished or isn't there is nothing.
class DeviceFiles {
public:
    virtual ~DeviceFiles() = default;
    /// The beginning of a file, as much as `into` takes.
    virtual std::optional<std::string_view> read(const std::string& path,
                                                 std::span<char> into) noexcept = 0;
    virtual bool exists(const std::string& path) noexcept = 0;
    /// What a folder holds, sorted.
    virtual std::vector<std::string> names(const std::string& folder) = 0;
    virtual std::optional<std::string> linkTarget(const std::string& path) = 0;

    /// A short text without the blanks around it; nothing for one that is too long.
    std::optional<std::string> text(const std::string& path);
    /// A count that is 0 or above; nothing for anything else.
    std::optional<std::uint64_t> count(const std::string& path) noexcept;
};

class SystemDeviceFiles final : public DeviceFiles {
public:
    std::optional<std::string_view> read(const std::string& path,
                                         std::span<char> into) noexcept override;
    bool exists(const std::string& path) noexcept override;
    std::vector<std::string> names(const std::string& folder) override;
    std::optional<std::string> linkTarget(const std::string& path) override;
};

/// All of `text`, behind blanks, as a count; nothing where it is anything else.
std::optional<std::uint64_t> wholeCount(std::string_view text, int base = 10) noexcept;

}  // namespace vantor
