#include "Platform/Linux/LinuxBootTime.h"

#include <new>

#include "Platform/Linux/KernelFile.h"
#include "Platform/Linux/ProcStat.h"

namespace vantor {

std::optional<std::int64_t> LinuxBootTime::bootSeconds() const noexcept {
    try {
        KernelFile file(stat_);  // one of this call's own, because any thread may ask
        const auto seconds = bootSecondsIn(file.read().value_or(""));
        return seconds == 0 ? std::nullopt : seconds;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

}  // namespace vantor
