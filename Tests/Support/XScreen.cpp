#include "Tests/Support/XScreen.h"

#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>

#include <fmt/format.h>

namespace vantor::test {

XScreen::XScreen(int width, int height)
    : width_(width), height_(height),
      server_({"Xvfb", "-displayfd", "1", "-screen", "0", fmt::format("{}x{}x24", width, height),
               "-fbdir", folder_.path().string(), "-nolisten", "tcp", "-noreset"},
              {"PATH=/usr/bin:/bin"}),
      display_(server_.isRunning() ? ":" + server_.line() : "") {}

std::vector<std::uint32_t> XScreen::pixels() const {
    std::ifstream file(folder_ / "Xvfb_screen0", std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const auto bigEndian = [&](std::size_t place) {
        std::uint32_t number = 0;
        for (std::size_t byte = 4 * place; byte < 4 * place + 4; ++byte)
            number = number << 8 | static_cast<unsigned char>(bytes.at(byte));
        return number;
    };
    constexpr std::size_t kHeaderSize = 0, kColours = 19, kColourSize = 12;
    if (bytes.size() < 4 * (kColours + 1))
        return {};
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width_) *
                                      static_cast<std::size_t>(height_));
    const std::size_t begin = bigEndian(kHeaderSize) + bigEndian(kColours) * kColourSize;
    if (begin + pixels.size() * 4 > bytes.size())
        return {};
    std::memcpy(pixels.data(), bytes.data() + begin, pixels.size() * 4);
    for (std::uint32_t& pixel : pixels)
        pixel &= 0xFFFFFF;
    return pixels;
}

void XScreen::crash() {
    kill(server_.id(), SIGKILL);
    server_.status();
}

}  // namespace vantor::test
