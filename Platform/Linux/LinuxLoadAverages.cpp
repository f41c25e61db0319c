#include "Platform/Linux/LinuxLoadAverages.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include <sys/sysinfo.h>

namespace vantor {

static_assert(SI_LOAD_SHIFT == 16);

FixedLoads LinuxLoadAverages::readLoads() noexcept {
    constexpr unsigned long kMost = std::numeric_limits<std::uint32_t>::max();
    struct sysinfo info {};
    if (::sysinfo(&info) != 0)
        return last_;
    for (std::size_t i = 0; i < last_.fixed.size(); ++i)
        last_.fixed[i] = static_cast<std::uint32_t>(std::min(info.loads[i], kMost));
    return last_;
}

}  // namespace vantor
