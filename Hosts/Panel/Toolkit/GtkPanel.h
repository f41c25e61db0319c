#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Hosts/Gtk/BarToolkit.h"
#include "Hosts/Gtk/Menus/GtkMenus.h"
#include "Hosts/Panel/PanelSession.h"
#include "Hosts/Panel/Toolkit/GtkPlace.h"
#include "Hosts/Panel/Toolkit/QueueSource.h"

namespace vantor {

/// All places of the item in the panels of this process, as the bars of one host. The item lives
/// from the first place to the last.
class GtkPanel final : public BarToolkit {
public:
    /// Never ended: panels destroy widgets up to the end of the process.
    static GtkPanel& shared();

    GtkWidget* makePlace(const VantorPanelOptions& options);
    void setMaximumWidth(GtkWidget* widget, double width) noexcept;

private:
    using Places = std::vector<std::unique_ptr<GtkPlace>>;

    GtkPanel();

    bool open(DisplaySystem) noexcept override { return true; }  // the panel has done that
    bool isLost() const noexcept override { return false; }
    bool show(const BarOptions& options, BarOwner& owner) override;
    void hide() noexcept override { owner_ = nullptr; }
    void listBars(std::vector<BarPlace>& into) const override;
    void setItemLength(double length) noexcept override;
    void repaintItem(BarID bar, const Rect& part) noexcept override;
    void repaintBars() noexcept override;
    MenuWindows& menusAt(BarID bar) noexcept override;
    BarWait serve() override { return {}; }  // the panel's loop does

    GtkPlace::Listener listener();
    void placeChanged(const GtkPlace& place);
    void placeDestroyed(const GtkPlace& place);
    void begin();
    void endIfUnused() noexcept;
    bool pressElsewhere(const GdkEventButton& event) noexcept;
    void menuChanged(bool isOpen) noexcept;

    Places places_;
    std::uint32_t placesMade_ = 0;
    double length_ = 0;
    BarOwner* owner_ = nullptr;
    GtkMenus menus_;
    std::unique_ptr<PanelSession> session_;
    std::unique_ptr<QueueSource> source_;
};

}  // namespace vantor
