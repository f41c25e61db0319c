#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

/// What a display says of itself. What it doesn't say is 0 or "".
struct EDID {
    std::uint16_t vendor = 0;  // three letters of five bits each
    std::uint16_t product = 0;
    std::uint32_t serial = 0;
    std::string name, serialText;
    std::uint32_t widthPixels = 0, heightPixels = 0;  // of the preferred mode
    std::uint32_t widthCentimetres = 0, heightCentimetres = 0;
};

/// Nothing where `bytes` isn't a whole EDID whose first block is sound.
std::optional<EDID> edidOf(std::string_view bytes);

/// "APP" of 0x0610.
std::string edidVendorLetters(std::uint16_t vendor);

}  // namespace vantor
