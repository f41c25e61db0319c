#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "Shared/Views/View.h"

namespace vantor::Painting {
class Image;
}

namespace vantor::inline VANTOR_MODULE {

/// A button of the launcher row: the icon of a program that a press opens, which is the desktop's
/// own where it has one to show, else our artwork.
/// Errors: a program that isn't there leaves a press without effect.
class StatInterfaceButton final : public View {
public:
    explicit StatInterfaceButton(const Rect& frame = {}) : View(frame) {}
    std::string_view className() const override { return "StatInterfaceButton"; }

    /// Which program, from 1 to 9.
    std::int64_t tag() const noexcept { return tag_; }
    void setTag(std::int64_t tag) noexcept {
        tag_ = tag;
        iconScale_ = 0;
    }
    /// From now on a press opens the program.
    void setupTarget() noexcept { hasTarget_ = true; }
    void openApp();
    bool highlighted() const noexcept { return highlighted_; }

    /// The desktop's icons may be others now, too.
    void updateColors() override;
    void mouseDown(std::int64_t eventNumber) override;
    void mouseUp(std::int64_t eventNumber) override;
    void mouseExited() override { setHighlighted(false); }

protected:
    void draw(Painting::Context& context) override;

private:
    void setHighlighted(bool highlighted);
    void findIcon(double scale);

    std::int64_t tag_ = 0;
    bool hasTarget_ = false, highlighted_ = false;
    std::shared_ptr<const Painting::Image> icon_;  // for screens of `iconScale_`
    double iconScale_ = 0;                         // 0 until it was looked for
};

/// What the button of that tag opens: the first of its places that exists, else the last one;
/// "" for an unknown tag.
std::string_view launcherPath(std::int64_t tag);

}  // namespace vantor::inline VANTOR_MODULE
