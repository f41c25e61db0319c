#pragma once

#include <filesystem>

#include "Platform/BootTime.h"
#include "Platform/Linux/KernelFiles.h"

namespace vantor {

/// "btime" of /proc/stat, read anew each time: it is the present time less the time since boot, so
/// setting the machine's clock changes it. 0 means that the kernel doesn't know.
class LinuxBootTime final : public BootTime {
public:
    explicit LinuxBootTime(const KernelFiles& files = {}) : stat_(files.proc / "stat") {}
    std::optional<std::int64_t> bootSeconds() const noexcept override;

private:
    std::filesystem::path stat_;
};

}  // namespace vantor
