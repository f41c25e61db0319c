#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Displays.h"
#include "Platform/GraphicsControl.h"
#include "Platform/Simulated/SimulatedRegistry.h"
#include "Platform/WindowServer.h"

namespace vantor::simulated {

/// What a scripted graphics control answers.
struct GraphicsAnswer {
    bool isThere = false;
    std::optional<std::int64_t> active;  // nothing: the question fails
};

class SimulatedGraphicsControl final : public GraphicsControl {
public:
    void setAnswer(GraphicsAnswer answer) noexcept { answer_ = answer; }
    bool open() override { return answer_.isThere; }
    std::optional<std::int64_t> activeGPU() override { return answer_.active; }

private:
    GraphicsAnswer answer_;
};

/// A screen of the scripted machine; `display` is the ID of its object in the registry, and
/// gives `screen` its location.
struct SimulatedScreen {
    std::uint64_t display = 0;
    Screen screen;
};

class SimulatedDisplays final : public Displays {
public:
    explicit SimulatedDisplays(const SimulatedRegistry& registry) noexcept : registry_(registry) {}

    void setScreens(std::vector<SimulatedScreen> screens) { screens_ = std::move(screens); }
    void reconfigure() { center_.post(kDisplaysReconfigured); }

    std::vector<Screen> screens() override;
    NotificationCenter& notificationCenter() noexcept override { return center_; }

private:
    const SimulatedRegistry& registry_;
    std::vector<SimulatedScreen> screens_;
    NotificationCenter center_;
};

class SimulatedWindowServer final : public WindowServer {
public:
    /// Nothing makes the question fail.
    void setFrameRate(std::optional<double> rate) noexcept { rate_ = rate; }
    std::optional<double> frameRate() noexcept override { return rate_; }

private:
    std::optional<double> rate_;
};

}  // namespace vantor::simulated
