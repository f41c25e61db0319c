#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/Linux/Descriptor.h"
#include "Platform/ProcessSource.h"

namespace vantor {

/// The processes in /proc. Of a process it opens "stat", "cmdline" and "cgroup", which everybody
/// may read, and asks for the target of the link "exe"; nothing else of it is ever touched.
/// Shape:  one descriptor of the folder, and buffers that keep their size: a reading allocates
///         where there are more processes than ever before, and not otherwise.
/// Errors: a folder that can't be opened is no reading; the next one tries again. A process whose
///         text can't be read or isn't whole is passed over.
/// Thread: one at a time.
class LinuxProcessSource final : public ProcessSource {
public:
    LinuxProcessSource(const Clock& clock, const std::filesystem::path& proc = "/proc");

    double ticksPerSecond() const noexcept override { return ticksPerSecond_; }
    std::uint64_t ticksSinceBoot() const noexcept override;
    bool read(std::vector<ProcessReading>& into) override;
    std::string displayName(const ProcessReading& process) override;
    ApplicationID application(const ProcessReading& process) override;

private:
    bool listNumbers();
    void addNumbersIn(std::size_t listingBytes);
    bool readProcess(std::int32_t id, ProcessReading& into) noexcept;
    std::string_view readText(std::int32_t id, std::string_view file) noexcept;
    std::string_view readExe(std::int32_t id) noexcept;

    const Clock& clock_;
    std::string path_;
    double ticksPerSecond_;
    Descriptor folder_;
    std::vector<std::int32_t> numbers_;
    std::vector<char> listing_, text_, link_;
};

}  // namespace vantor
