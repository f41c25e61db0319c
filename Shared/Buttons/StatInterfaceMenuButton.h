#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"
#include "Shared/Views/View.h"

namespace vantor::inline VANTOR_MODULE {

/// A button inside a row that is a text and no more.
class StatInterfaceMenuButton final : public View {
public:
    using Action = std::function<void(StatInterfaceMenuButton&)>;

    explicit StatInterfaceMenuButton(const Rect& frame = {}) : View(frame) {}
    std::string_view className() const override { return "StatInterfaceMenuButton"; }
    bool isFlipped() const override { return true; }

    const std::string& title() const noexcept { return title_; }
    void setTitle(std::string_view title);
    void setAction(Action action) { action_ = std::move(action); }
    const PropertyValue& representedObject() const noexcept { return representedObject_; }
    void setRepresentedObject(PropertyValue value) { representedObject_ = std::move(value); }
    bool bold() const noexcept { return bold_; }
    void setBold(bool bold) noexcept { bold_ = bold; }

    void updateColors() override { setNeedsDisplay(); }
    void setMenuItemHighlighted(bool highlighted) override;
    bool menuItemHighlighted() const noexcept { return highlighted_; }
    /// A press that began elsewhere, in the menu's own tracking, fires nothing when it ends here.
    void mouseDown(std::int64_t eventNumber) override { lastEventNumber_ = eventNumber; }
    void mouseUp(std::int64_t eventNumber) override;

protected:
    void draw(Painting::Context& context) override;

private:
    std::string title_;
    Action action_;
    PropertyValue representedObject_;
    bool highlighted_ = false, bold_ = false;
    std::int64_t lastEventNumber_ = -1;
};

}  // namespace vantor::inline VANTOR_MODULE
