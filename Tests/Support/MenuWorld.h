#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Hosts/Menu/MenuSession.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuHighlight.h"
#include "Shared/VTRMenuItemButtonBuilders.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/ScriptedMenuWindows.h"
#include "Tests/Support/World.h"

namespace vantor::test {

/// A row of that size that says nothing.
template <class Kind = StatInterfaceFlippedView>
std::shared_ptr<VTRMenuItem> plainRow(double width, double height, bool highlightable = true) {
    auto item = std::make_shared<VTRMenuItem>();
    item->setView(std::make_shared<Kind>(Rect{0, 0, width, height}));
    item->view()->setHighlightable(highlightable);
    return item;
}

/// A row with a text, 19 points high, that can be highlighted.
inline std::shared_ptr<VTRMenuItem> textRow(std::string_view label, std::string_view value = "") {
    auto item = createComboTextMenuItem(label, value, 225, 19);
    item->view()->setHighlightable(true);
    return item;
}

/// Notes what menus are told, and does what an extra does with it.
class NotingDelegate final : public VTRMenuDelegate {
public:
    void menuWillOpen(VTRMenu& menu) override { note("open", menu); }
    void menuDidClose(VTRMenu& menu) override { note("close", menu); }
    void menuWillHighlightItem(VTRMenu& menu, VTRMenuItem* item) override {
        highlighted = item;
        ++highlights;
        highlightRow(menu, item);
    }
    void name(const VTRMenu& menu, std::string name) { menu_.emplace_back(&menu, std::move(name)); }

    std::vector<std::string> notes;
    VTRMenuItem* highlighted = nullptr;
    int highlights = 0;

private:
    void note(const char* what, const VTRMenu& menu) {
        for (const auto& [known, name] : menu_)
            if (known == &menu)
                notes.push_back(std::string(what) + " " + name);
    }
    std::vector<std::pair<const VTRMenu*, std::string>> menu_;
};

/// A menu in a world of its own, and a user who has it open: a head of 20 points that can't be
/// highlighted; "Graph", which opens a menu of a picture; "Plain", which opens none; "Cores",
/// which opens one of two rows; then a launcher's row. Texts are 19 points high.
struct MenuWorld {
    MenuWorld() {
        delegate.name(menu, "main");
        delegate.name(*graphMenu, "graph");
        delegate.name(*coresMenu, "cores");
        for (VTRMenu* const each : {&menu, graphMenu.get(), coresMenu.get()})
            each->setDelegate(&delegate);
        graph->setSubmenu(graphMenu);
        cores->setSubmenu(coresMenu);
        graphMenu->addItem(plainRow(324, 200, false));
        coresMenu->addItem(textRow("One"));
        coresMenu->addItem(textRow("Two"));
        plain->action = VTRMenuItemUtilities::fauxAction;
        for (const auto& row : coresMenu->itemArray())
            row->action = VTRMenuItemUtilities::fauxAction;
        for (const auto& row : {head, graph, plain, cores, launcher})
            menu.addItem(row);
    }

    bool open() { return session.open(menu, windows); }
    /// What has been asked of the queue for now.
    void serve() { world.machine.run(0.001); }
    void wait(double seconds) { world.machine.run(seconds); }
    std::shared_ptr<VTRMenuItem> highlighted(std::size_t level = 0) const {
        const auto* const row = session.menus().highlightedRow(level);
        return row != nullptr ? row->item : nullptr;
    }

    static constexpr Point kHead{100, 10}, kGraph{100, 25}, kPlain{100, 45}, kCores{100, 65};
    static constexpr double kLauncherTop = 77;

    World world;
    NotingDelegate delegate;
    ScriptedMenuWindows windows;
    VTRMenu menu;
    std::shared_ptr<VTRMenu> graphMenu = createMenu(), coresMenu = createMenu();
    std::shared_ptr<VTRMenuItem> head = plainRow(225, 20, false), graph = textRow("Graph"),
                                 plain = textRow("Plain"), cores = textRow("Cores"),
                                 launcher = createLauncherMenuItem({1, 2, 3, 8, 4});
    int closed = 0;
    MenuSession session{world.machine.mainQueue, [this] { ++closed; }};
};

}  // namespace vantor::test
