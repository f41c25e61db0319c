#pragma once

#include <memory>
#include <vector>

#include <gtk/gtk.h>

#include "Hosts/Gtk/BarToolkit.h"
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
    std::size_t bars() const noexcept override { return bars_.size(); }
    void setItemLength(double length) noexcept override;
    void repaintItem() noexcept override;
    void repaintBars() noexcept override;
    BarWait serve() override;

private:
    static void monitorsChanged(GdkScreen*, gpointer self) noexcept;
    void makeBars();
    bool isWanted(GdkMonitor* monitor, int index) const;

    GdkDisplay* display_ = nullptr;
    BarOptions options_;
    BarOwner* owner_ = nullptr;
    std::vector<std::unique_ptr<GtkBar>> bars_;
    double length_ = 0;
    std::vector<GPollFD> polled_;
    std::vector<pollfd> descriptors_;
};

}  // namespace vantor
