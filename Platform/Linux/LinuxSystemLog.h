#pragma once

#include "Platform/SystemLog.h"

namespace vantor {

/// The system's journal through syslog(3); in its place the terminal, where there is one.
/// A program has one at a time: the connection to the journal is the process's.
class LinuxSystemLog final : public SystemLog {
public:
    /// `terminal`, which is standard error but under test, is used where it is a terminal.
    /// `identity`, the name of the program, outlives it.
    explicit LinuxSystemLog(int terminal = 2, const char* identity = "vantorbar") noexcept;
    ~LinuxSystemLog() override;
    LinuxSystemLog(const LinuxSystemLog&) = delete;
    LinuxSystemLog& operator=(const LinuxSystemLog&) = delete;
    void write(std::string_view text) noexcept override;

private:
    int terminal_;  // -1: the journal
    const char* identity_;
};

}  // namespace vantor
