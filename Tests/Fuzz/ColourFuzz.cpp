// Colours in settings that users, or other programs, may have written.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Foundation/Colour.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto colour = vantor::colorFromString(text);
    if (!colour)
        return 0;
    for (const double part : {colour->red, colour->green, colour->blue, colour->alpha})
        if (!std::isfinite(part))
            std::abort();
    // What is written of it is a colour, and reads as what is written again.
    const std::string written = vantor::stringFromColor(*colour);
    const auto again = vantor::colorFromString(written);
    if (!again || vantor::stringFromColor(*again) != written)
        std::abort();
    return 0;
}
