#include "Platform/Linux/LinuxCallStack.h"

#include <array>
#include <cstdlib>
#include <memory>

#include <execinfo.h>

namespace vantor {

std::string LinuxCallStack::symbols() const {
    std::array<void*, 64> frames;
    const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
    const std::unique_ptr<char*, decltype(&std::free)> names(
        backtrace_symbols(frames.data(), count), &std::free);
    std::string text;
    for (int frame = 0; names && frame < count; ++frame) {
        if (!text.empty())
            text += '\n';
        text += names.get()[frame];
    }
    return text;
}

}  // namespace vantor
