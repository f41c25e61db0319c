#pragma once

#include <memory>
#include <vector>

#include "Foundation/WeakHandle.h"
#include "Platform/Ports.h"
#include "Shared/VTRMenu.h"

namespace vantor::inline VANTOR_MODULE {

/// The base of what puts a module's dropdown together: it owns the menu, and replaces the rows of
/// one while moving as little as possible.
/// Thread: main.
class StatInterface : public VTRMenuDelegate {
public:
    using Items = std::vector<std::shared_ptr<VTRMenuItem>>;

    StatInterface();
    ~StatInterface() override;
    StatInterface(const StatInterface&) = delete;
    StatInterface& operator=(const StatInterface&) = delete;

    /// The dropdown is open: only then are figures written into it.
    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled) noexcept { enabled_ = enabled; }
    bool isUsingCombined() const noexcept { return isUsingCombined_; }
    void setIsUsingCombined(bool isUsing) noexcept { isUsingCombined_ = isUsing; }
    VTRMenu* menu() const noexcept { return menu_.get(); }
    /// What a combined dropdown shows of this module.
    const std::shared_ptr<VTRMenuItem>& combinedItem() const noexcept { return combinedItem_; }

    void rebuildMenuWithItems(const Items& items) { rebuildMenu(*menu_, items); }
    /// The menu has these rows, in this order. Rows that it has already stay where they are, as
    /// far as their order allows: a rebuild of the same rows costs nothing and doesn't flicker.
    static void rebuildMenu(VTRMenu& menu, const Items& withItems);

protected:
    void setMenu(std::shared_ptr<VTRMenu> menu) { menu_ = std::move(menu); }
    void setCombinedItem(std::shared_ptr<VTRMenuItem> item) { combinedItem_ = std::move(item); }
    const Ports& ports() const noexcept { return ports_; }

private:
    Ports ports_;
    bool enabled_ = false, isUsingCombined_ = false;
    std::shared_ptr<VTRMenu> menu_;
    std::shared_ptr<VTRMenuItem> combinedItem_;
};

}  // namespace vantor::inline VANTOR_MODULE
