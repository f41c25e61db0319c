#pragma once

#include <cstdint>
#include <optional>

namespace vantor {

/// Port: when the machine started. Any thread.
class BootTime {
public:
    virtual ~BootTime() = default;
    /// Whole seconds since 1970, or nothing where it can't be read.
    virtual std::optional<std::int64_t> bootSeconds() const noexcept = 0;
};

}  // namespace vantor
