#include "Tests/Support/Compositor.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <fmt/format.h>
#include <unistd.h>

namespace vantor::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr int kNobody = 65534;

Words command(const std::string& configuration) {
    Words words{"sway", "-c", configuration};
    if (geteuid() == 0)
        words.insert(words.begin(), {"setpriv", fmt::format("--reuid={}", kNobody),
                                     fmt::format("--regid={}", kNobody), "--clear-groups"});
    return words;
}

}  // namespace

Compositor::Compositor(int width, int height) {
    if (!fs::exists("/usr/bin/sway"))
        return;
    std::ofstream(folder_ / "configuration")
        << fmt::format("output HEADLESS-1 resolution {}x{} position 0,0 bg #000000 solid_color\n",
                       width, height)
        << "seat seat0 fallback true\nxwayland disable\n";
    if (geteuid() == 0 && chown(folder_.path().c_str(), kNobody, kNobody) != 0)
        return;
    server_.emplace(command((folder_ / "configuration").string()),
                    Words{"PATH=/usr/bin:/bin", "HOME=" + folder_.path().string(),
                          "XDG_RUNTIME_DIR=" + folder_.path().string(), "WLR_BACKENDS=headless",
                          "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman"});
}

bool Compositor::comesUp() const {
    for (int attempt = 0; attempt < 1000; ++attempt, std::this_thread::sleep_for(10ms))
        if (fs::exists(socket()) && !commandSocket().empty() &&
            ask({"-t", "get_outputs"}).find("HEADLESS-1") != std::string::npos)
            return true;
    return false;
}

std::string Compositor::commandSocket() const {
    for (const auto& entry : fs::directory_iterator(folder_.path()))
        if (entry.path().filename().string().starts_with("sway-ipc"))
            return entry.path().string();
    return {};
}

Words Compositor::environment() const {
    return {"XDG_RUNTIME_DIR=" + folder_.path().string(), "WAYLAND_DISPLAY=wayland-1",
            "PATH=/usr/bin:/bin", "NO_AT_BRIDGE=1"};
}

std::string Compositor::ask(const Words& words) const {
    Words all{"swaymsg", "-r", "-s", commandSocket()};
    all.insert(all.end(), words.begin(), words.end());
    return Child(all, environment()).rest();
}

Compositor::Photograph Compositor::photograph(const std::string& screen) const {
    std::istringstream stream(
        Child({"grim", "-t", "ppm", "-o", screen, "-"}, environment()).rest());
    std::string kind;
    int most = 0;
    Photograph photograph;
    stream >> kind >> photograph.width >> photograph.height >> most;
    stream.get();
    if (kind != "P6" || most != 255)
        return {};
    std::string bytes(static_cast<std::size_t>(photograph.width) *
                          static_cast<std::size_t>(photograph.height) * 3,
                      '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const auto byte = [&](std::size_t place) {
        return std::uint32_t{static_cast<unsigned char>(bytes[place])};
    };
    for (std::size_t place = 0; place < bytes.size(); place += 3)
        photograph.pixels.push_back(byte(place) << 16 | byte(place + 1) << 8 | byte(place + 2));
    return photograph;
}

std::uint32_t Compositor::Photograph::pixel(int x, int y) const {
    if (x < 0 || x >= width || y < 0 || y >= height)
        return 0;
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
}

void Compositor::crash() {
    kill(server_->id(), SIGKILL);
    server_->status();
}

}  // namespace vantor::test
