#pragma once

#include <string>

namespace vantor {

/// Port: where the program is, for reports of what shouldn't happen. Any thread.
class CallStack {
public:
    virtual ~CallStack() = default;
    /// The caller's frames, innermost first, one a line; "" where they can't be had.
    virtual std::string symbols() const = 0;
};

}  // namespace vantor
