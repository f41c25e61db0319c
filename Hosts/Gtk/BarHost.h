#pragma once

#include "Hosts/Gtk/BarToolkit.h"
#include "Hosts/ItemHost.h"

namespace vantor::inline VANTOR_MODULE {
class MenuExtra;
}

namespace vantor {

/// Carries the item in bars of its own, one on each monitor or on one of them.
/// A press opens the item's menu, and the next one closes it; so far nothing but the highlight
/// shows that it is open.
/// Units:  points. The bars are light or dark as the desktop is.
/// Errors: making it throws where there is no such monitor.
/// Thread: main queue.
class BarHost final : public ItemHost, private BarOwner {
public:
    /// The toolkit is open, and outlives the host.
    BarHost(BarToolkit& toolkit, BarOptions options);
    ~BarHost() override;
    BarHost(const BarHost&) = delete;
    BarHost& operator=(const BarHost&) = delete;

    /// Whose view is painted; null for nobody's. It outlives its time here.
    void setExtra(MenuExtra* extra) noexcept { extra_ = extra; }
    /// Whether `displayIfNeeded` has something to do: a paint may change the item's length.
    bool needsDisplay() const noexcept { return needsDisplay_; }

    void setLength(double length) override;
    void setViewFrameSize(Size size) override;
    void setNeedsDisplay() override;
    bool isMenuDown() const noexcept override { return menuDown_; }
    void drawMenuBackground(Painting::Context& context) override;
    void willUnload() override;

private:
    void display(Sample sample) override;
    void paint(_cairo* cairo, Size bar, double scale) noexcept override;
    void itemPressed() noexcept override;

    BarToolkit& toolkit_;
    BarOptions options_;
    MenuExtra* extra_ = nullptr;
    double shownLength_ = 0;
    bool needsDisplay_ = false, menuDown_ = false, shownDark_ = false;
};

}  // namespace vantor
