#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/ItemPicture.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/XScreen.h"

namespace vantor::test {

/// A place to run a real panel in: an X server, a bus and a home of its own. Panels look for
/// plug-ins in the system's folders alone, so this one runs where those are copies with ours added.
/// Units:  pixels.
class PanelStand {
public:
    /// A file that is to be in a folder of the system's.
    struct Addition {
        std::filesystem::path file, folder;
    };

    PanelStand(int width, int height);

    /// Why no panel can run here; "" where one can.
    std::string trouble(const std::string& program) const;
    void add(const Addition& addition);
    /// Below the home.
    void write(const std::string& file, const std::string& text) const;
    const std::filesystem::path& home() const noexcept { return home_.path(); }
    Words environment() const;
    void start(const Words& panel);
    bool isRunning();
    /// Ends the panel with its answer to a signal that asks for it, and waits.
    void end();

    /// Runs one of our programs beside the panel, and answers what it writes.
    std::string run(const Words& words) const { return Child(words, environment()).rest(); }
    void press(int x, int y) const;

    /// As `comes` saw it last.
    std::uint32_t pixel(int x, int y) const;
    /// Whether something in there has another colour than that.
    bool hasInk(const PixelRect& part, std::uint32_t background) const;
    /// Waits for it, while everybody else goes on.
    bool comes(const std::function<bool()>& isDone, double seconds = 20);

private:
    TemporaryFolder home_, copies_;
    XScreen screen_;
    PrivateBus bus_{std::filesystem::path("/usr/share/dbus-1/services")};
    std::string mounts_;
    LinuxMainQueue queue_;
    std::vector<std::uint32_t> pixels_;
    std::optional<Child> panel_;
};

}  // namespace vantor::test
