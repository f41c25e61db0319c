#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Geometry.h"

namespace vantor::inline VANTOR_MODULE {

class BarGraph;
class DotImageView;
class HistoryGraph;
class ImageView;
class StatInterfaceMenuButton;
class StatInterfaceTextField;
class StatInterfaceView;
class TickView;
class VTRMenu;

/// A row of a menu: a view, and names for the controls in it, so that those who change a figure
/// needn't search the tree. It may stack rows of its own inside its view, by key, so that a block
/// of lines under one arrow is one row to the host; and it may open a further menu.
/// Units:  points; highlights of neighbours in whole points.
/// Thread: main. Rows are shared by whoever made them and the menus that show them.
class VTRMenuItem : public std::enable_shared_from_this<VTRMenuItem> {
public:
    VTRMenuItem();
    ~VTRMenuItem();
    VTRMenuItem(const VTRMenuItem&) = delete;
    VTRMenuItem& operator=(const VTRMenuItem&) = delete;

    const std::string& title() const noexcept { return title_; }
    void setTitle(std::string_view title) { title_ = title; }
    /// The view of a row of a menu; null while it is stacked in another row.
    StatInterfaceView* view() const noexcept { return view_.get(); }
    void setView(std::shared_ptr<StatInterfaceView> view);
    /// The view of a row that is stacked in another one.
    StatInterfaceView* alternateView() const noexcept { return alternateView_.get(); }
    void setAlternateView(std::shared_ptr<StatInterfaceView> view);
    /// The one or the other, wherever the row is.
    StatInterfaceView* anyView() const noexcept { return view_ ? view() : alternateView(); }
    const std::shared_ptr<VTRMenu>& submenu() const noexcept { return submenu_; }
    void setSubmenu(std::shared_ptr<VTRMenu> menu) { submenu_ = std::move(menu); }
    /// The menu that the row is in, or null.
    VTRMenu* menu() const noexcept { return menu_; }

    /// The row's look in short: its title and its height.
    void createSignature();
    const std::string& signature() const noexcept { return signature_; }
    /// Widens the row until its value fits; never makes it narrower.
    void resizeToFieldValue();

    // Rows inside this one, from the top down.
    const std::vector<std::shared_ptr<VTRMenuItem>>& menuItemsOrdered() const noexcept {
        return menuItemsOrdered_;
    }
    /// Without a key nothing happens.
    void addSubMenuItem(const std::shared_ptr<VTRMenuItem>& item, std::string_view key);
    VTRMenuItem* itemWithKey(std::string_view key) const noexcept;
    void removeItem(VTRMenuItem& item);
    void removeItemWithKey(std::string_view key);
    void removeAllItems();
    /// As wide as the widest of the rows inside, and as high as all of them.
    void updateLayout();
    const std::string& key() const noexcept { return key_; }
    VTRMenuItem* parentItem2() const noexcept { return parentItem2_; }

    // The controls; null where the row has none of the kind.
    std::shared_ptr<StatInterfaceMenuButton> button;
    std::shared_ptr<StatInterfaceTextField> label, field, value2;
    std::shared_ptr<ImageView> image1, image2;
    std::shared_ptr<DotImageView> legend;
    std::shared_ptr<TickView> tick;
    std::shared_ptr<BarGraph> graph;
    std::shared_ptr<HistoryGraph> historyGraph;

    /// What choosing the row does; null for a row that can't be chosen.
    void (*action)(VTRMenuItem& item) = nullptr;

    // A highlight that isn't the row's own rectangle.
    bool useCustomHighlight = false;
    Rect customHighlightRect;                                       // y and height
    std::int64_t previousItemHighlight = 0, nextItemHighlight = 0;  // into the rows beside it

private:
    friend class VTRMenu;
    void detach(VTRMenuItem& item);

    std::string title_, signature_, key_;
    std::shared_ptr<StatInterfaceView> view_, alternateView_;
    std::shared_ptr<VTRMenu> submenu_;
    VTRMenu* menu_ = nullptr;
    VTRMenuItem* parentItem2_ = nullptr;
    std::vector<std::shared_ptr<VTRMenuItem>> menuItemsOrdered_;
};

}  // namespace vantor::inline VANTOR_MODULE
