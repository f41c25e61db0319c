#pragma once

#include "Platform/GraphicsControl.h"

namespace vantor {

/// A machine whose graphics processors nobody switches.
class LinuxGraphicsControl final : public GraphicsControl {
public:
    bool open() override { return false; }
    std::optional<std::int64_t> activeGPU() override { return std::nullopt; }
};

}  // namespace vantor
