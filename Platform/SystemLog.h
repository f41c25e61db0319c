#pragma once

#include <string_view>

namespace vantor {

/// Port: the system's log. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    /// One message; line breaks inside it are kept where the log can hold them.
    virtual void write(std::string_view text) noexcept = 0;
};

}  // namespace vantor
