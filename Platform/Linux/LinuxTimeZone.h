#pragma once

#include "Platform/TimeZone.h"

namespace vantor {

/// The system's time zone, or the environment's. A change of the system's is followed.
class LinuxTimeZone final : public TimeZone {
public:
    std::int32_t secondsFromGMT(double time) const noexcept override;
};

}  // namespace vantor
