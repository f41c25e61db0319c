#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Hosts/Text/TextFrame.h"

namespace vantor {

/// Knows what stands on a screen, and what it takes to make it show something else.
class ScreenUpdate {
public:
    /// What to send to a terminal, in one piece: the lines of `frame` that aren't on the screen
    /// yet. "" where all of them are. Good until the next call.
    std::string_view to(const TextFrame& frame);
    /// Somebody else wrote to the screen, or it changed its size: the next update writes it all.
    void forget() noexcept { known_ = false; }

private:
    bool hasLeftovers(std::size_t below) const noexcept;

    std::string bytes_;
    std::vector<std::string> shown_;
    bool known_ = false;
};

}  // namespace vantor
