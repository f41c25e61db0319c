#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vantor {

/// A "cpuN" line is believed up to this many CPUs.
inline constexpr std::uint32_t kMaximumCPUs = 8192;

/// What one CPU has done since boot, as the kernel counts it, in hundredths of a second.
struct ProcessorFigures {
    std::uint32_t cpu = 0;
    std::uint64_t user = 0, nice = 0, system = 0, idle = 0;
    // Younger kernels add these, in this order. Guest time is inside user and nice already.
    std::uint64_t iowait = 0, irq = 0, softirq = 0, steal = 0, guest = 0, guestNice = 0;
    bool operator==(const ProcessorFigures&) const = default;
};

/// Goes through the "cpuN" lines of a text of /proc/stat.
/// Shape:  reads in the text itself, which must outlive it; never allocates.
/// Errors: a line is believed only when it ends in a line feed, so that a text cut anywhere gives
///         no false figure, and when it has nothing but four or more numbers. All others are
///         passed over. A number beyond 64 bits reads as the largest one.
class ProcStatReader {
public:
    explicit ProcStatReader(std::string_view text) noexcept : rest_(text) {}
    /// Fills `into` with the next CPU's figures; false, and `into` untouched, behind the last.
    bool next(ProcessorFigures& into) noexcept;

private:
    std::string_view rest_;
};

/// Seconds since 1970 at boot, from the "btime" line; nothing where there's no whole one.
std::optional<std::int64_t> bootSecondsIn(std::string_view procStat) noexcept;

}  // namespace vantor
