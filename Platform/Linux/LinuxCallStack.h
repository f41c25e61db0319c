#pragma once

#include "Platform/CallStack.h"

namespace vantor {

class LinuxCallStack final : public CallStack {
public:
    std::string symbols() const override;
};

}  // namespace vantor
