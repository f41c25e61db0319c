#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace vantor {

/// Port: somebody who watches the program from within, such as the simulator's journal. It
/// changes nothing. Main queue only, but for `committed` and `logged`.
class Witness {
public:
    virtual ~Witness() = default;
    /// A measurement begins. `sequence` is the tick's, or nothing outside a tick.
    virtual void measures(std::string_view collector, std::optional<int> sequence) = 0;
    /// A collector tells one delegate that row `mode` of its schedule was handled.
    virtual void updated(std::string_view collector, int mode) = 0;
    /// A history file had its batch written: `statements` were queued, `failed` of them failed.
    /// On the queue of that file, which in the scripted machine is the main queue's thread.
    virtual void committed(std::string_view file, std::size_t statements, std::size_t failed) = 0;
    virtual void extraLoaded(std::string_view extra) = 0;
    virtual void extraUnloaded(std::string_view extra) = 0;
    /// The log delivers a message. On the log's own queue.
    virtual void logged(std::string_view text) = 0;
};

}  // namespace vantor
