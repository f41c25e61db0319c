#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include <fmt/format.h>

#include "Tests/Platform/Linux/KernelTexts.h"

namespace vantor::test {

/// A text of /proc/PID/stat as the kernel writes it.
inline std::string processStat(int id, const std::string& name, std::uint64_t ticks,
                               std::uint64_t start = 50, int parent = 1) {
    return fmt::format(
        "{} ({}) S {} {} {} 0 -1 4194304 145 0 0 0 {} 0 70 80 20 0 1 0 {} 2990080 428 "
        "18446744073709551615 94334635036672 94334635054601 140727119308864 0 0 0 0 "
        "6 0 1 0 0 17 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n",
        id, name, parent, id, id, ticks, start);
}

/// Puts a process below a folder that stands for /proc.
inline void writeProcess(const std::filesystem::path& proc, int id, const std::string& name,
                         std::uint64_t ticks, std::uint64_t start = 50) {
    writeText(proc / std::to_string(id) / "stat", processStat(id, name, ticks, start));
}

}  // namespace vantor::test
