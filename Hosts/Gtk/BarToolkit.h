#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include <poll.h>

#include "Foundation/Geometry.h"
#include "Hosts/Gtk/BarGeometry.h"

struct _cairo;

namespace vantor {

/// What the bars' windows are made with.
enum class DisplaySystem : std::uint8_t { wayland, x11 };

struct BarOptions {
    BarEdge edge = BarEdge::top;
    ItemSide side = ItemSide::right;
    std::string monitor;  // its number, from 0, or its name; "" for all of them
    std::string title;    // of the windows
};

/// Who fills the bars. Called inside `BarToolkit::serve`.
class BarOwner {
public:
    /// `cairo` is at the upper left of a bar of that size, in points, and clipped to what changed;
    /// `scale` is the screen's: pixels a point.
    virtual void paint(_cairo* cairo, Size bar, double scale) noexcept = 0;
    /// The item was pressed with the first button.
    virtual void itemPressed() noexcept = 0;

protected:
    ~BarOwner() = default;
};

/// What a toolkit's main loop waits for.
struct BarWait {
    std::span<const pollfd> descriptors;  // good until the next `serve`
    int milliseconds = -1;                // what it waits for at most; -1 for ever
};

/// What the program asks of GTK. That costs a program without bars 10 MiB of memory and many
/// milliseconds, so its callers live in a shared object of their own, which stands on nothing of
/// the program but this file.
/// Units:  points; a bar is kBarHeight of them high.
/// Errors: what fails leaves no bars.
/// Thread: the one that called `open` first. Nothing happens, and nobody is called, but in here.
class BarToolkit {
public:
    /// Whether there is such a display, which can carry bars. It stays open.
    [[nodiscard]] virtual bool open(DisplaySystem system) noexcept = 0;
    /// Bars on those monitors, also when they come and go. `owner` stays until `hide`.
    /// False where there is no such monitor now.
    [[nodiscard]] virtual bool show(const BarOptions& options, BarOwner& owner) = 0;
    virtual void hide() noexcept = 0;
    virtual std::size_t bars() const noexcept = 0;

    /// 0 takes the item out of the bars.
    virtual void setItemLength(double length) noexcept = 0;
    // What is to be painted anew by the next `serve`.
    virtual void repaintItem() noexcept = 0;
    virtual void repaintBars() noexcept = 0;

    /// Does all that is ready, and answers what to wait for until the next time.
    virtual BarWait serve() = 0;

protected:
    ~BarToolkit() = default;
};

/// The entry point of the shared object. Its number goes up with each change of this file.
inline constexpr const char* kBarToolkitEntry = "vantorBarToolkit1";
using BarToolkitEntry = BarToolkit* (*)();

}  // namespace vantor
