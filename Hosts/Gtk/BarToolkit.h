#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <poll.h>

#include "Foundation/Geometry.h"
#include "Hosts/Gtk/BarGeometry.h"
#include "Hosts/Menu/MenuWindows.h"

struct _cairo;

namespace vantor {

/// What the bars' windows are made with.
enum class DisplaySystem : std::uint8_t { wayland, x11 };

/// What lies under the item: a colour of ours, or what somebody else painted there.
enum class BarBackdrop : std::uint8_t { own, foreign };

struct BarOptions {
    BarEdge edge = BarEdge::top;
    ItemSide side = ItemSide::right;
    std::string monitor;  // its number, from 0, or its name; "" for all of them
    std::string title;    // of the windows
    BarBackdrop backdrop = BarBackdrop::own;
    double margin = kItemMargin;  // between the item and the end of its bar
};

/// A bar for as long as its monitor is there; a number is never used again.
enum class BarID : std::uint32_t { none = 0 };

struct BarPlace {
    BarID bar = BarID::none;
    double scale = 1;  // of the screen: pixels a point
    bool operator==(const BarPlace&) const = default;
};

/// Who fills the bars. Called inside `BarToolkit::show` and `BarToolkit::serve`.
class BarOwner {
public:
    /// `cairo` is at the upper left of a bar of that size, in points, and clipped to what is to be
    /// painted.
    virtual void paint(_cairo* cairo, BarID bar, Size size) noexcept = 0;
    /// What the item is called, and what it shows, for those who can't see it.
    virtual std::string itemName() noexcept = 0;
    virtual std::string itemSentence() noexcept = 0;
    /// The item in that bar was pressed with the first button.
    virtual void itemPressed(BarID bar) noexcept = 0;
    /// Bars came, went, or have another scale.
    virtual void barsChanged() noexcept = 0;

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
/// the program but this file and that of the menus.
/// Units:  points; a bar is kBarHeight of them high.
/// Errors: what fails leaves no bars.
/// Thread: the one that called `open` first. Nothing happens, and nobody is called, but in here.
class BarToolkit {
public:
    /// Whether there is such a display, which can carry bars. It stays open.
    [[nodiscard]] virtual bool open(DisplaySystem system) noexcept = 0;
    /// Whether the display that was open has ended, and all bars with it. Nothing brings it back.
    virtual bool isLost() const noexcept = 0;
    /// Bars on those monitors, also when they come and go. `owner` stays until `hide`.
    /// False where there is no such monitor now.
    [[nodiscard]] virtual bool show(const BarOptions& options, BarOwner& owner) = 0;
    virtual void hide() noexcept = 0;
    /// Those that there are now, in the order of their monitors.
    virtual void listBars(std::vector<BarPlace>& into) const = 0;

    /// 0 takes the item out of the bars.
    virtual void setItemLength(double length) noexcept = 0;
    // What is to be painted anew by the next `serve`; `part` counts from the item's upper left.
    virtual void repaintItem(BarID bar, const Rect& part) noexcept = 0;
    virtual void repaintBars() noexcept = 0;

    /// Menus of the item in that bar, from the next one that is opened on.
    virtual MenuWindows& menusAt(BarID bar) noexcept = 0;

    /// Does all that is ready, and answers what to wait for until the next time.
    virtual BarWait serve() = 0;

protected:
    ~BarToolkit() = default;
};

/// The entry point of the shared object. Its number goes up with each change of this file.
inline constexpr const char* kBarToolkitEntry = "vantorBarToolkit3";
using BarToolkitEntry = BarToolkit* (*)();

}  // namespace vantor
