#pragma once

#include <cstdint>
#include <optional>

namespace vantor {

/// Port: the service that knows which graphics processor drives the screens of a machine with
/// several. Main queue only; doesn't block.
class GraphicsControl {
public:
    static constexpr std::int64_t kDiscrete = 0, kIntegrated = 1;

    virtual ~GraphicsControl() = default;
    /// Whether there is such a service and it lets itself be opened now.
    virtual bool open() = 0;
    /// kDiscrete or kIntegrated, or what else the service says; nothing where it doesn't answer.
    virtual std::optional<std::int64_t> activeGPU() = 0;
};

}  // namespace vantor
