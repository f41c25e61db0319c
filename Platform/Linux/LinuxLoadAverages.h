#pragma once

#include "Platform/LoadAverages.h"

namespace vantor {

/// The load averages of sysinfo(2), whose scale is 65536. A load of 65536 or more is cut.
class LinuxLoadAverages final : public LoadAverages {
public:
    FixedLoads readLoads() noexcept override;

private:
    FixedLoads last_{.scale = 1u << 16};
};

}  // namespace vantor
