#pragma once

#include <memory>
#include <string_view>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

class VTRMenu;
class VTRMenuExtraView;
class VTRModule;

/// An item of a bar, as its host sees it.
/// Thread: the host calls everything on the main queue, and `willUnload` before it drops the
///         item.
class MenuExtra {
public:
    using Modules = std::vector<std::unique_ptr<VTRModule>>;

    virtual ~MenuExtra() = default;
    /// What the host shows on a click, or null.
    virtual VTRMenu* menu() { return nullptr; }
    /// What the host paints, or null before the item is there.
    virtual VTRMenuExtraView* view() { return nullptr; }
    virtual void willUnload() {}
    /// For assistive technology.
    virtual std::string_view AXDescription() const { return ""; }
    /// Null for an item that isn't made of modules.
    virtual const Modules* modules() const { return nullptr; }
};

}  // namespace vantor::inline VANTOR_MODULE
