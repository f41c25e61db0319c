#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {

/// A row that is a text to click.
class StatInterfaceActionView final : public StatInterfaceView {
public:
    using StatInterfaceView::StatInterfaceView;
    std::string_view className() const override { return "StatInterfaceActionView"; }
    bool useLayers() const override { return false; }

    const std::string& title() const noexcept { return title_; }
    void setTitle(std::string_view title);
    bool bold() const noexcept { return bold_; }
    void setBold(bool bold) noexcept { bold_ = bold; }
    /// Without one the text looks as if it couldn't be clicked, which it can't.
    void setAction(std::function<void()> action);
    void mouseUp(std::int64_t eventNumber) override;

protected:
    void draw(Painting::Context& context) override;

private:
    Colour ink() const;

    bool bold_ = false;
    std::function<void()> action_;
    std::string title_;
};

}  // namespace vantor::inline VANTOR_MODULE
