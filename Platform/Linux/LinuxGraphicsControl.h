#pragma once

#include "Platform/GraphicsControl.h"

namespace vantor {

class LinuxRegistry;

/// There is something to control where a machine has an integrated graphics processor and
/// another one. The one that shows a picture is active; of two, the integrated one.
class LinuxGraphicsControl final : public GraphicsControl {
public:
    /// `registry` outlives it.
    explicit LinuxGraphicsControl(LinuxRegistry& registry) noexcept : registry_(registry) {}
    bool open() override;
    std::optional<std::int64_t> activeGPU() override;

private:
    LinuxRegistry& registry_;
};

}  // namespace vantor
