#include "Tests/Support/PanelStand.h"

#include <csignal>
#include <fstream>

#include <fmt/format.h>
#include <unistd.h>

#include "Tests/Support/QueueWorld.h"

namespace vantor::test {
namespace {

namespace fs = std::filesystem;

/// To see files where others don't have any takes a name space of one's own.
Words apart(const std::string& script) {
    Words words{"unshare", "--mount"};
    if (geteuid() != 0)
        words.insert(words.end(), {"--user", "--map-root-user"});
    words.insert(words.end(), {"sh", "-c", script});
    return words;
}

}  // namespace

PanelStand::PanelStand(int width, int height) : screen_(width, height) {}

std::string PanelStand::trouble(const std::string& program) const {
    if (!screen_.isInstalled() || !screen_.isThere())
        return "there is no Xvfb";
    if (!fs::exists(fs::path("/usr/bin") / program))
        return "there is no " + program;
    if (Child(apart("mount --bind /tmp /tmp"), environment()).status() != 0)
        return "nobody may mount here";
    return "";
}

void PanelStand::add(const Addition& addition) {
    const fs::path copy = copies_ / addition.folder.relative_path();
    if (!fs::exists(copy)) {
        fs::create_directories(copy);
        for (const auto& entry : fs::directory_iterator(addition.folder))
            fs::copy(entry.path(), copy / entry.path().filename(),
                     fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        mounts_ += fmt::format("mount --bind '{}' '{}' && ", copy.string(), addition.folder.string());
    }
    fs::create_symlink(addition.file, copy / addition.file.filename());
}

void PanelStand::write(const std::string& file, const std::string& text) const {
    fs::create_directories((home_ / file).parent_path());
    std::ofstream(home_ / file) << text;
}

Words PanelStand::environment() const {
    const std::string home = home_.path().string();
    return {"HOME=" + home,
            "XDG_RUNTIME_DIR=" + home,
            "XDG_CONFIG_HOME=" + home + "/.config",
            "DISPLAY=" + screen_.display(),
            "DBUS_SESSION_BUS_ADDRESS=" + bus_.address(),
            "PATH=/usr/bin:/bin:/usr/sbin:/sbin",
            "LC_ALL=C.UTF-8",
            "GDK_BACKEND=x11",
            "GDK_GL=disable",
            "GSETTINGS_BACKEND=keyfile",
            "GIO_USE_VFS=local",
            "NO_AT_BRIDGE=1"};
}

void PanelStand::start(const Words& panel) {
    // What the bus starts for the panel would have the environment of the test.
    Words update = environment();
    update.insert(update.begin(), "dbus-update-activation-environment");
    run(update);
    std::string script = mounts_ + "exec";
    for (const std::string& word : panel)
        script += fmt::format(" '{}'", word);
    panel_.emplace(apart(script), environment());
}

bool PanelStand::isRunning() { return panel_.has_value() && !panel_->statusIfEnded().has_value(); }

void PanelStand::end() {
    kill(panel_->id(), SIGTERM);
    panel_->status();
}

void PanelStand::press(int x, int y) const {
    run({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1"});
}

std::uint32_t PanelStand::pixel(int x, int y) const {
    const auto place = static_cast<std::size_t>(y * screen_.width() + x);
    return place < pixels_.size() ? pixels_[place] : 0;
}

bool PanelStand::hasInk(const PixelRect& part, std::uint32_t background) const {
    for (int row = part.y; row < part.y + part.height; ++row)
        for (int column = part.x; column < part.x + part.width; ++column)
            if (pixel(column, row) != background)
                return true;
    return false;
}

bool PanelStand::comes(const std::function<bool()>& isDone, double seconds) {
    return runUntil(
        queue_,
        [&] {
            pixels_ = screen_.pixels();
            return !pixels_.empty() && isDone();
        },
        seconds);
}

}  // namespace vantor::test
