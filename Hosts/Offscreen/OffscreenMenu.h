#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Foundation/Colour.h"
#include "Foundation/WeakHandle.h"
#include "Painting/ImageSurface.h"
#include "Shared/VTRMenu.h"
#include "Shared/Views/View.h"

namespace vantor {

/// A menu that nobody sees. It opens and closes as one on a screen does, and paints the rows that
/// are marked when it is asked to.
/// Units:  points. As wide as its widest row; the others are widened to it for a picture only.
/// Thread: main queue.
class OffscreenMenu final : public VTRMenuHost, public ViewWindow {
public:
    /// Shows `menu`, which its delegate is told of first.
    explicit OffscreenMenu(VTRMenu& menu);
    /// Takes it off again, and tells its delegate, if there still is such a menu.
    ~OffscreenMenu() override;
    OffscreenMenu(const OffscreenMenu&) = delete;
    OffscreenMenu& operator=(const OffscreenMenu&) = delete;

    /// Lets go of the menu without a word: the process that showed it died.
    void abandon() noexcept;

    /// Whether there still is such a menu.
    bool isThere() const noexcept { return menu_.get() != nullptr; }
    bool shows(const VTRMenu& menu) const noexcept { return menu_.get() == &menu; }
    void displayIfNeeded();

    /// The whole menu, painted anew, over `background` or the menu's own.
    static Painting::ImageSurface snapshot(VTRMenu& menu, double scale,
                                           const std::optional<Colour>& background);

    void menuChanged(VTRMenu&) override { needsDisplay_ = true; }
    void setNeedsDisplay(View&, View&) override { needsDisplay_ = true; }

private:
    void displayRow(StatInterfaceView& view);

    WeakHandle<VTRMenu> menu_;
    std::optional<Painting::ImageSurface> canvas_;
    bool needsDisplay_ = true;
};

}  // namespace vantor
