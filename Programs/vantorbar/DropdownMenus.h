#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Hosts/Offscreen/OffscreenMenu.h"
#include "Shared/VTRMenuExtra.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"

namespace vantor {

/// What puts an extra's dropdown together; null before its module is set up, and after it ended.
StatInterfaceCPU* interfaceOf(const VTRMenuExtra& extra);

/// A menu of an extra, by the name under which scenarios, dumps and pictures know it: "main",
/// "cores", "history", "load", "uptime", or "memory:KEY" or "processor:KEY" of a graphics
/// processor. Null where the extra has no such menu now.
VTRMenu* menuNamed(VTRMenuExtra& extra, std::string_view name);
/// Whether there can be a submenu of that name, on some machine.
bool isSubmenuName(std::string_view name);
/// Those that the extra has now.
std::vector<std::string> submenuNames(const VTRMenuExtra& extra);
/// The name of a row's submenu; "" for a row without one.
std::string submenuName(VTRMenuExtra& extra, const VTRMenuItem& item);

/// The dropdown of one extra, opened and closed as by somebody at the screen.
/// Errors: whatever can't be done is false; closing what isn't open does nothing.
/// Thread: main queue.
class DropdownMenus {
public:
    explicit DropdownMenus(VTRMenuExtra& extra) noexcept : extra_(extra) {}

    /// The pointer rests on the row of a submenu before that opens.
    [[nodiscard]] bool open(std::string_view name);
    void close(std::string_view name);
    [[nodiscard]] bool highlight(std::string_view text);
    [[nodiscard]] bool highlightNothing();
    [[nodiscard]] bool clickLauncher(std::int64_t tag);
    /// Nobody is told that what is open closes: the process dies.
    void abandon() noexcept;
    bool isOpen(std::string_view name) const noexcept;
    /// Those opened last come first, as they close.
    std::vector<std::string> openNames() const;
    void displayIfNeeded();

private:
    struct Open {
        std::string name;
        std::unique_ptr<OffscreenMenu> menu;
    };

    /// Null unless the main menu is open.
    VTRMenu* mainMenu();
    void forgetGone();
    void tellHighlight(VTRMenu& menu, VTRMenuItem* item);

    VTRMenuExtra& extra_;
    std::vector<Open> open_;
};

}  // namespace vantor
