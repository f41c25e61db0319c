#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

#include "Platform/Linux/DRMClientText.h"
#include "Platform/Linux/EDID.h"
#include "Platform/Linux/PCINames.h"

namespace vantor {
namespace {

void require(bool holds) noexcept {
    if (!holds)
        std::abort();
}

/// The first block with its header and sum put right, so that what follows them is read, too.
std::string sound(std::string_view bytes) {
    std::string edid(bytes);
    edid.resize(128);
    edid.replace(0, 8, std::string("\0\xFF\xFF\xFF\xFF\xFF\xFF\0", 8));
    unsigned sum = 0;
    for (const char byte : edid.substr(0, 127))
        sum += static_cast<unsigned char>(byte);
    edid[127] = static_cast<char>(256 - sum % 256);
    return edid;
}

void readEDID(std::string_view bytes) {
    edidOf(bytes);
    const auto edid = edidOf(sound(bytes));
    require(edid.has_value());
    require(edid->widthPixels < 4096 && edid->heightPixels < 4096);
    require(edid->name.size() <= 13 && edidVendorLetters(edid->vendor).size() == 3);
}

void readNames(std::string_view text) {
    for (const PCIID id : {PCIID{0x1002, 0x73BF}, PCIID{0, 0}, PCIID{0xFFFF, 0xFFFF}})
        require(!graphicsModel(id, pciNameIn(text, id)).empty());
}

void readClient(std::string_view text) {
    const DRMClientFigures figures = drmClientFiguresOf(text);
    std::array<double, DRMClientFigures::kEngines.size()> loads{};
    addEngineLoads({}, figures, 1, loads);
    for (const double load : loads)
        require(load >= 0);
}

}  // namespace
}  // namespace vantor

/// The first byte chooses the reader.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    constexpr void (*kReaders[])(std::string_view) = {vantor::readEDID, vantor::readNames,
                                                      vantor::readClient};
    kReaders[data[0] % std::size(kReaders)](text);
    return 0;
}
