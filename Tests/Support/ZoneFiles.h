#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace vantor::test {

struct ZoneTransition {
    std::int64_t time;
    std::uint8_t type;
};

/// One block of a compiled zone file, with times of so many bytes.
inline std::string zoneBlock(char version, int timeBytes,
                             const std::vector<ZoneTransition>& transitions,
                             const std::vector<std::int32_t>& offsets) {
    std::string block = std::string("TZif") + version + std::string(15, '\0');
    const auto append = [&block](std::int64_t value, int bytes) {
        for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8)
            block += static_cast<char>(value >> shift & 0xFF);
    };
    for (const std::size_t count : {std::size_t{0}, std::size_t{0}, std::size_t{0},
                                    transitions.size(), offsets.size(), std::size_t{4}})
        append(static_cast<std::int64_t>(count), 4);
    for (const ZoneTransition& transition : transitions)
        append(transition.time, timeBytes);
    for (const ZoneTransition& transition : transitions)
        append(transition.type, 1);
    for (const std::int32_t offset : offsets) {
        append(offset, 4);
        append(0, 2);
    }
    return block + std::string("ABC\0", 4);
}

/// A whole file of the second version. Its first block says something else, which is old.
inline std::string zoneFile(const std::vector<ZoneTransition>& transitions,
                            const std::vector<std::int32_t>& offsets, std::string_view footer) {
    return zoneBlock('2', 4, {}, {12345}) + zoneBlock('2', 8, transitions, offsets) + "\n" +
           std::string(footer) + "\n";
}

}  // namespace vantor::test
