#include "Foundation/UUID.h"

#include <cstdint>
#include <exception>
#include <random>

#include <fmt/format.h>

namespace vantor {

std::optional<std::string> newUUID() {
    try {
        std::random_device device;
        std::uniform_int_distribution<std::uint32_t> word;
        const std::uint32_t first = word(device), last = word(device);
        const std::uint32_t middle = (word(device) & 0xFFFF0FFF) | 0x00004000;    // version 4
        const std::uint32_t variant = (word(device) & 0x3FFFFFFF) | 0x80000000u;  // RFC 4122
        return fmt::format("{:08X}-{:04X}-{:04X}-{:04X}-{:04X}{:08X}", first, middle >> 16,
                           middle & 0xFFFF, variant >> 16, variant & 0xFFFF, last);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace vantor
