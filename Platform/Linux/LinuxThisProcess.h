#pragma once

#include "Platform/ThisProcess.h"

namespace vantor {

class LinuxThisProcess final : public ThisProcess {
public:
    std::string name() const override;
    std::uint32_t threadID() const noexcept override;
    std::string threadName() const override;
};

}  // namespace vantor
