#pragma once

#include <vector>

#include "Hosts/Gtk/BarToolkit.h"
#include "Hosts/ItemHost.h"
#include "Hosts/ItemPicture.h"
#include "Hosts/Menu/MenuSession.h"

namespace vantor {

/// Carries the item in bars of its own, one on each monitor or on one of them.
/// It paints the item into a picture for each scale of a screen when the item asks for that, and
/// has the toolkit show what came out differently, if anything did.
/// A press opens the item's menu in that bar, and there the item is highlighted; the next press
/// closes it, or takes it to another bar.
/// Units:  points. The bars are light or dark as the desktop is.
/// Errors: making it throws where there is no such monitor.
/// Thread: main queue, which is the current context's.
class BarHost final : public ItemHost, private BarOwner {
public:
    /// The toolkit is open, and outlives the host.
    BarHost(BarToolkit& toolkit, BarOptions options);
    ~BarHost() override;
    BarHost(const BarHost&) = delete;
    BarHost& operator=(const BarHost&) = delete;

    void setExtra(MenuExtra* extra) noexcept override { extra_ = extra; }
    /// Whether `displayIfNeeded` has something to do: a paint may change the item's length.
    bool needsDisplay() const noexcept { return needsDisplay_; }

    void setLength(double length) override;
    void setViewFrameSize(Size size) override;
    void setNeedsDisplay() override;
    /// Inside a paint whether the menu is open where the picture is shown, else whether it is open
    /// anywhere.
    bool isMenuDown() const noexcept override { return menuDown_; }
    void drawMenuBackground(Painting::Context& context) override;
    void willUnload() override;

private:
    /// What bars of one scale show: all but the one with the open menu, or only that.
    struct Face {
        bool menuDown;
        ItemPicture picture;
        PixelRect changed;
    };
    /// A bar, and what it shows.
    struct Bar {
        BarPlace place;
        bool menuDown = false;
        bool operator==(const Bar&) const = default;
    };

    void display(Sample sample) override;
    void paint(_cairo* cairo, BarID bar, Size size) noexcept override;
    std::string itemName() noexcept override;
    std::string itemSentence() noexcept override;
    void itemPressed(BarID bar) noexcept override;
    void barsChanged() noexcept override;

    void openMenu(BarID bar);
    void closeMenu();
    void setMenuBar(BarID bar);
    void listBars();
    void fitFaces();
    void paintFaces();
    void showChanges();
    void paintBackdrop(Painting::Context& context, Size size) const noexcept;
    static bool shows(const Bar& bar, const Face& face) noexcept;
    const Face* faceOf(const Bar& bar) const noexcept;

    BarToolkit& toolkit_;
    BarOptions options_;
    MenuExtra* extra_ = nullptr;
    std::vector<BarPlace> places_;
    std::vector<Bar> bars_, shownBars_;  // as they are to be, and as they are
    std::vector<Face> faces_;            // the one with the open menu is the last
    MenuSession menus_;
    BarID menuBar_ = BarID::none;
    double shownLength_ = 0;
    bool needsDisplay_ = false, menuDown_ = false, shownDark_ = false;
};

}  // namespace vantor
