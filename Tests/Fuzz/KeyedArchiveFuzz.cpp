// Archived objects in settings that another program, or a failing disk, may have left.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Foundation/KeyedArchive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const vantor::ArchivedObject object = vantor::objectInKeyedArchive(bytes);
    const auto* const colour = std::get_if<vantor::Colour>(&object);
    if (colour == nullptr)
        return 0;
    for (const double part : {colour->red, colour->green, colour->blue, colour->alpha})
        if (!(part >= 0 && part <= 1))
            std::abort();
    if (!vantor::colorFromString(vantor::stringFromColor(*colour)))
        std::abort();
    return 0;
}
