#pragma once

#include <optional>

namespace vantor {

/// Port: who puts the windows on the screens. Main queue only; doesn't block.
class WindowServer {
public:
    virtual ~WindowServer() = default;
    /// Frames a second of late, or nothing where it doesn't tell.
    virtual std::optional<double> frameRate() noexcept = 0;
};

}  // namespace vantor
