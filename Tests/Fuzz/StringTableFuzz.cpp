// String tables as translators, or a failing disk, may have left them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Foundation/StringTable.h"
#include "Foundation/UTF8.h"

namespace {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\')
            result += '\\';
        result += letter;
    }
    return result + '"';
}

std::string written(const vantor::StringTable& table) {
    std::string text;
    for (const auto& [key, value] : table)
        text += quoted(key) + " = " + quoted(value) + ";\n";
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vantor::StringTable table =
        vantor::stringTable({reinterpret_cast<const char*>(data), size});
    // What was read is text, and reads the same once it is written again.
    const std::string text = written(table);
    if (vantor::validUTF8Prefix(text).size() != text.size() || vantor::stringTable(text) != table)
        std::abort();
    return 0;
}
