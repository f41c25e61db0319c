#pragma once

#include <optional>
#include <string_view>

#include "Platform/ProcessSource.h"

namespace vantor {

// The texts of /proc/PID, read in place. None of these allocates.

/// What a text of "stat" says, without `time`; nothing where it isn't whole: one that was cut
/// anywhere gives no false figure. Ticks beyond 64 bits read as the most that fit.
std::optional<ProcessReading> processIn(std::string_view stat) noexcept;

/// The path of the application in a text of "cgroup": down to its last scope or service; "" where
/// there is none. A login session, the user manager and the init are no applications.
std::string_view applicationPathIn(std::string_view cgroup) noexcept;

/// Goes through the arguments of a text of "cmdline". One that was cut ends it.
class ArgumentReader {
public:
    explicit ArgumentReader(std::string_view cmdline) noexcept : rest_(cmdline) {}
    std::optional<std::string_view> next() noexcept;

private:
    std::string_view rest_;
};

/// What stands behind the last slash.
std::string_view baseName(std::string_view path) noexcept;

}  // namespace vantor
