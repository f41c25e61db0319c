#pragma once

#include <memory>

namespace vantor::inline VANTOR_MODULE {

class VTRMenu;

/// Who is told what happens to a menu.
class VTRMenuDelegate {
public:
    virtual ~VTRMenuDelegate() = default;
    virtual void menuWillOpen(VTRMenu& menu) = 0;
    virtual void menuDidClose(VTRMenu& menu) = 0;
};

/// What a host shows on a click.
class VTRMenu {
public:
    /// On screen; set by its delegate when it opens and closes.
    bool visible() const noexcept { return visible_; }
    void setVisible(bool visible) noexcept { visible_ = visible; }
    /// Not owned; null where nobody wants to know.
    VTRMenuDelegate* delegate() const noexcept { return delegate_; }
    void setDelegate(VTRMenuDelegate* delegate) noexcept { delegate_ = delegate; }

private:
    VTRMenuDelegate* delegate_ = nullptr;
    bool visible_ = false;
};

inline std::unique_ptr<VTRMenu> createMenu() { return std::make_unique<VTRMenu>(); }

}  // namespace vantor::inline VANTOR_MODULE
