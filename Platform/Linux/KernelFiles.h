#pragma once

#include <filesystem>

namespace vantor {

/// Where the kernel's files are. A test brings folders of its own.
struct KernelFiles {
    std::filesystem::path proc = "/proc";
    std::filesystem::path sys = "/sys";
};

}  // namespace vantor
