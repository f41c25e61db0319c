// Zone files, and the rules at their end, as anything may have left them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Foundation/TimeZoneRules.h"

namespace {

/// No rule can say more than a week.
void check(std::int32_t offset) {
    if (offset < -200 * 3600 || offset > 200 * 3600)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto rule = vantor::YearlyZoneRule::fromText(bytes))
        for (const std::int64_t time :
             {std::int64_t{0}, std::int64_t{1'425'900'000}, std::int64_t{-1'000'000'000'000'000},
              std::int64_t{1'000'000'000'000'000}})
            check(rule->secondsFromGMT(time));
    // Offsets of a zone file are whatever stands there.
    if (const auto rules = vantor::TimeZoneRules::fromZoneFile(bytes))
        for (std::int64_t time = -1; time < 2'000'000'000; time += 77'777'777)
            rules->secondsFromGMT(time);
    return 0;
}
