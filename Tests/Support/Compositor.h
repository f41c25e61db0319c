#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/Child.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {

/// A Wayland compositor of the test's own, without devices, with one screen that is kept in
/// memory: HEADLESS-1. It refuses to run as root, and runs as nobody then.
/// Units:  pixels.
class Compositor {
public:
    Compositor(int width, int height);

    bool isInstalled() const noexcept { return server_.has_value() && server_->isRunning(); }
    /// Waits until it takes clients.
    bool comesUp() const;
    /// What its clients have to know.
    Words environment() const;
    std::string socket() const { return (folder_ / "wayland-1").string(); }

    /// What it answers to a command of its own.
    std::string ask(const Words& words) const;
    /// Red, green and blue of the screens from the top; none where there is no photograph.
    struct Photograph {
        int width = 0, height = 0;
        std::vector<std::uint32_t> pixels;
        std::uint32_t pixel(int x, int y) const;
    };
    Photograph photograph(const std::string& screen = "HEADLESS-1") const;
    void crash();

private:
    std::string commandSocket() const;

    TemporaryFolder folder_;
    std::optional<Child> server_;
};

}  // namespace vantor::test
