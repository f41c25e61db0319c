// Names in a log directory, as others may have put them there.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Shared/External/Logging/LGLogFileName.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto name = vantor::logFileName(text, "a");
    // What was read is a name, and reads the same once it is written again.
    if (name && name->attempt > 0 && vantor::logFileName(textOf(*name, "a"), "a") != name)
        std::abort();
    return 0;
}
