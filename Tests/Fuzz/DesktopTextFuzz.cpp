#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "Platform/Linux/DesktopEntry.h"
#include "Platform/Linux/IconTheme.h"

namespace vantor {
namespace {

void require(bool holds) noexcept {
    if (!holds)
        std::abort();
}

void readEntry(std::string_view text) {
    const auto entry = parseDesktopEntry(text);
    if (!entry)
        return;
    const auto words = argumentsOf(entry->exec);
    require(!words || !words->empty());
}

void readTheme(std::string_view text) {
    const IconTheme theme = parseIconTheme(text);
    for (const IconFolder& folder : theme.folders) {
        require(!folder.path.empty() && folder.path.find("..") == folder.path.npos);
        require(folder.largestPixels <= 2 * 4096 * 8);
    }
    for (const std::string& name : theme.inherits)
        require(!name.empty() && name.find('/') == name.npos);
}

}  // namespace
}  // namespace vantor

/// The first byte chooses the reader.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    constexpr void (*kReaders[])(std::string_view) = {vantor::readEntry, vantor::readTheme};
    kReaders[data[0] % std::size(kReaders)](text);
    return 0;
}
