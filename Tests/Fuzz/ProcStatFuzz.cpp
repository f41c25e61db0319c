#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Platform/Linux/ProcStat.h"
#include "Platform/Linux/SteadyTicks.h"

namespace vantor {
namespace {

constexpr std::size_t kCPUs = 64;

void require(bool holds) noexcept {
    if (!holds)
        std::abort();
}

/// Any figures at all: the counter doesn't fall, and grows by no more than 32 bits can carry.
void requireSteady(SteadyCounter& counter, std::uint64_t raw) noexcept {
    const std::uint64_t before = counter.value();
    counter.advanceTo(raw);
    require(counter.value() - before <= SteadyCounter::kLargestStep);
}

/// One reading of the counters, as the port takes it.
void takeReading(std::string_view text, bool first, std::array<SteadyTicks, kCPUs>& ticks,
                 SteadyCounter& counter) noexcept {
    ProcStatReader reader(text);
    for (ProcessorFigures figures; reader.next(figures);) {
        require(figures.cpu < kMaximumCPUs);
        requireSteady(counter, figures.user);
        requireSteady(counter, figures.guestNice);
        SteadyTicks& processor = ticks[figures.cpu % kCPUs];
        if (processor.started())
            processor.advanceTo(figures);
        else if (first)
            processor.startAt(figures);
        else
            processor.startAtZero(figures);
        const ProcessorTicks after = processor.ticks();
        processor.advanceTo(figures);
        require(processor.ticks() == after);  // the same figures again are no time that passed
    }
    require(bootSecondsIn(text).value_or(0) >= 0);
}

}  // namespace
}  // namespace vantor

/// The input holds two texts with a form feed between them, as two readings one after the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\f');
    std::array<vantor::SteadyTicks, vantor::kCPUs> ticks;
    vantor::SteadyCounter counter;
    vantor::takeReading(input.substr(0, end), true, ticks, counter);
    if (end != input.npos)
        vantor::takeReading(input.substr(end + 1), false, ticks, counter);
    return 0;
}
