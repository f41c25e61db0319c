#include "Foundation/Base64.h"

#include <cstddef>
#include <cstdint>

namespace vantor {
namespace {

constexpr std::string_view kLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroup = 4;  // letters, for three bytes
constexpr std::size_t kBytes = 3;

/// At most two, at the end.
std::size_t paddingOf(std::string_view text) noexcept {
    if (text.ends_with("=="))
        return 2;
    return text.ends_with('=') ? 1 : 0;
}

}  // namespace

std::optional<PropertyValue::Data> dataFromBase64(std::string_view text) {
    if (text.size() % kGroup != 0)
        return std::nullopt;
    const std::size_t padding = paddingOf(text);
    PropertyValue::Data data;
    data.reserve(text.size() / kGroup * kBytes);
    std::uint32_t bits = 0;
    for (std::size_t position = 0; position < text.size(); ++position) {
        const bool isPadding = position >= text.size() - padding;
        const auto letter = isPadding ? 0 : kLetters.find(text[position]);
        if (letter == kLetters.npos)
            return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(letter);
        if (position % kGroup == kGroup - 1)
            for (const int shift : {16, 8, 0})
                data.push_back(static_cast<std::byte>(bits >> shift));
    }
    data.resize(data.size() - padding);
    return data;
}

std::string base64FromData(const PropertyValue::Data& data) {
    std::string text;
    for (std::size_t begin = 0; begin < data.size(); begin += kBytes) {
        std::uint32_t bits = 0;
        for (std::size_t byte = begin; byte < begin + kBytes; ++byte)
            bits =
                bits << 8 | (byte < data.size() ? std::to_integer<std::uint32_t>(data[byte]) : 0);
        for (const int shift : {18, 12, 6, 0})
            text.push_back(kLetters[bits >> shift & 0x3F]);
    }
    const std::size_t padding = (kBytes - data.size() % kBytes) % kBytes;
    return text.replace(text.size() - padding, padding, padding, '=');
}

}  // namespace vantor
