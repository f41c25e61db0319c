// Property lists as another program, or a failing disk, may have left them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Foundation/PropertyList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto value = vantor::propertyListValue(bytes);
    // What was read must be readable again once we have written it.
    if (value && *value && !vantor::propertyListValue(vantor::propertyListXML(*value)))
        std::abort();
    return 0;
}
