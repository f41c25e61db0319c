#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Foundation/WeakHandle.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

class ViewWindow;
class VTRMenu;

/// Who is told what happens to a menu. A host calls this from inside its tracking of the pointer.
class VTRMenuDelegate {
public:
    virtual ~VTRMenuDelegate() = default;
    virtual void menuWillOpen(VTRMenu& menu) = 0;
    virtual void menuDidClose(VTRMenu& menu) = 0;
    /// The pointer came to `item`, or left all rows.
    virtual void menuWillHighlightItem(VTRMenu& /*menu*/, VTRMenuItem* /*item*/) {}
};

/// Who shows a menu, and is told that its rows are others now.
class VTRMenuHost {
public:
    virtual ~VTRMenuHost() = default;
    virtual void menuChanged(VTRMenu& menu) = 0;
};

/// What a host shows on a click: a list of rows, each of them a view of ours. Rows are told of
/// their place and their theme; those that are made by key are found again by it.
/// Thread: main.
class VTRMenu {
public:
    using Items = std::vector<std::shared_ptr<VTRMenuItem>>;
    using Cache = std::map<std::string, std::shared_ptr<VTRMenuItem>, std::less<>>;

    VTRMenu();
    ~VTRMenu();
    VTRMenu(const VTRMenu&) = delete;
    VTRMenu& operator=(const VTRMenu&) = delete;

    const Items& itemArray() const noexcept { return items_; }
    void addItem(const std::shared_ptr<VTRMenuItem>& item);
    void insertItem(const std::shared_ptr<VTRMenuItem>& item, std::size_t atIndex);
    /// One that isn't in a menu is ignored.
    void removeItem(VTRMenuItem& item);
    void removeItemAtIndex(std::size_t index);
    /// Its entry in the cache stays, so that its builder finds it again.
    void removeItemWithKey(std::string_view key);
    void removeAllItems();

    void themeChange() { updateColors(); }
    void updateColors();
    void updateIndexes();

    /// Rows that were made once, by key.
    Cache& cache() noexcept { return cache_; }
    /// On screen; set by its delegate when it opens and closes.
    bool visible() const noexcept { return visible_; }
    void setVisible(bool visible) noexcept { visible_ = visible; }
    /// Not owned; null where nobody wants to know.
    VTRMenuDelegate* delegate() const noexcept { return delegate_; }
    void setDelegate(VTRMenuDelegate* delegate) noexcept { delegate_ = delegate; }

    /// For hosts: where the rows are shown from now on, and who hears of other rows. Null for
    /// nowhere and nobody.
    void setHost(VTRMenuHost* host, ViewWindow* window);

    WeakHandle<VTRMenu> handle() const noexcept { return self_.handle(); }

private:
    void changed();

    Items items_;
    Cache cache_;
    VTRMenuDelegate* delegate_ = nullptr;
    VTRMenuHost* host_ = nullptr;
    ViewWindow* window_ = nullptr;
    bool visible_ = false;
    Observation themeChanged_;
    WeakSource<VTRMenu> self_{*this};
};

/// A menu without padding of its own.
inline std::unique_ptr<VTRMenu> createMenu() { return std::make_unique<VTRMenu>(); }

}  // namespace vantor::inline VANTOR_MODULE
