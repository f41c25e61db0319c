#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <gtk/gtk.h>

#include "Hosts/Gtk/BarToolkit.h"
#include "Hosts/Gtk/Menus/GtkMenus.h"
#include "Hosts/Gtk/Toolkit/GtkBar.h"

namespace vantor {

class GtkToolkit final : public BarToolkit {
public:
    GtkToolkit() noexcept;
    GtkToolkit(const GtkToolkit&) = delete;
    GtkToolkit& operator=(const GtkToolkit&) = delete;

    bool open(DisplaySystem system) noexcept override;
    bool show(const BarOptions& options, BarOwner& owner) override;
    void hide() noexcept override;
    bool isLost() const noexcept override { return isLost_; }
    void listBars(std::vector<BarPlace>& into) const override;
    void setItemLength(double length) noexcept override;
    void repaintItem(BarID bar, const Rect& part) noexcept override;
    void repaintBars() noexcept override;
    MenuWindows& menusAt(BarID bar) noexcept override;
    BarWait serve() override;

private:
    using Bars = std::vector<std::unique_ptr<GtkBar>>;

    static void monitorsChanged(GdkScreen*, gpointer self) noexcept;
    void watchConnection() noexcept;
    bool hasHungUp() const noexcept;
    void lose() noexcept;
    void makeBars();
    bool pressElsewhere(const GdkEventButton& event) noexcept;
    void closeMenusOf(const Bars& bars) noexcept;
    static std::unique_ptr<GtkBar> takeBarOf(GdkMonitor* monitor, Bars& bars) noexcept;
    bool isWanted(GdkMonitor* monitor, int index) const;
    BarWait nextWait();

    GdkDisplay* display_ = nullptr;
    int connection_ = -1;  // to the display
    bool isLost_ = false;
    BarOptions options_;
    BarOwner* owner_ = nullptr;
    Bars bars_;
    GtkMenus menus_;
    std::uint32_t barsMade_ = 0;
    double length_ = 0;
    std::vector<GPollFD> polled_;
    std::vector<pollfd> descriptors_;
};

}  // namespace vantor
