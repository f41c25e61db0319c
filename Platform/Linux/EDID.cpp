#include "Platform/Linux/EDID.h"

#include <algorithm>
#include <cstddef>

namespace vantor {
namespace {

constexpr std::size_t kBlockBytes = 128;
constexpr std::string_view kHeader{"\0\xFF\xFF\xFF\xFF\xFF\xFF\0", 8};
constexpr std::size_t kFirstDescriptor = 54, kDescriptorBytes = 18, kDescriptors = 4;
constexpr unsigned kNameTag = 0xFC, kSerialTag = 0xFF;

/// One byte of a block, as a number.
unsigned at(std::string_view block, std::size_t place) noexcept {
    return static_cast<unsigned char>(block[place]);
}

bool isSound(std::string_view block) noexcept {
    unsigned sum = 0;
    for (std::size_t place = 0; place < block.size(); ++place)
        sum += at(block, place);
    return block.starts_with(kHeader) && sum % 256 == 0;
}

/// Up to the line feed that ends it, without blanks, and nothing that doesn't print.
std::string textOf(std::string_view descriptor) {
    std::string text(descriptor.substr(5));
    text.resize(std::min(text.find('\n'), text.size()));
    std::erase_if(text, [](char letter) { return letter < ' ' || letter > '~'; });
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

void readTiming(std::string_view descriptor, EDID& into) noexcept {
    if (into.widthPixels != 0)
        return;  // the first is the preferred one
    into.widthPixels = at(descriptor, 2) | (at(descriptor, 4) >> 4) << 8;
    into.heightPixels = at(descriptor, 5) | (at(descriptor, 7) >> 4) << 8;
}

void readDescriptor(std::string_view descriptor, EDID& into) {
    const bool isTiming = at(descriptor, 0) != 0 || at(descriptor, 1) != 0;
    if (isTiming)
        readTiming(descriptor, into);
    else if (at(descriptor, 3) == kNameTag)
        into.name = textOf(descriptor);
    else if (at(descriptor, 3) == kSerialTag)
        into.serialText = textOf(descriptor);
}

}  // namespace

std::optional<EDID> edidOf(std::string_view bytes) {
    if (bytes.empty() || bytes.size() % kBlockBytes != 0)
        return std::nullopt;
    const std::string_view block = bytes.substr(0, kBlockBytes);
    if (!isSound(block))
        return std::nullopt;
    EDID edid;
    edid.vendor = static_cast<std::uint16_t>(at(block, 8) << 8 | at(block, 9));
    edid.product = static_cast<std::uint16_t>(at(block, 10) | at(block, 11) << 8);
    edid.serial = at(block, 12) | at(block, 13) << 8 | at(block, 14) << 16 | at(block, 15) << 24;
    edid.widthCentimetres = at(block, 21);
    edid.heightCentimetres = at(block, 22);
    for (std::size_t number = 0; number < kDescriptors; ++number)
        readDescriptor(block.substr(kFirstDescriptor + number * kDescriptorBytes, kDescriptorBytes),
                       edid);
    return edid;
}

std::string edidVendorLetters(std::uint16_t vendor) {
    std::string letters;
    for (const int shift : {10, 5, 0}) {
        const int letter = vendor >> shift & 0x1F;
        letters.push_back(letter >= 1 && letter <= 26 ? static_cast<char>('A' + letter - 1) : '?');
    }
    return letters;
}

}  // namespace vantor
