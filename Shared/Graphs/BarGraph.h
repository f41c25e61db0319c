#pragma once

#include <string_view>

#include "Shared/Views/View.h"

namespace vantor::inline VANTOR_MODULE {

/// The small bar of a row, filled from the left.
/// Errors: a fraction that isn't a number, or is below 0, shows an empty bar.
class BarGraph final : public View {
public:
    static constexpr double kHeight = 17;

    using View::View;
    std::string_view className() const override { return "BarGraph"; }

    /// A fraction, 0 to 1 in spite of its name; one above 1 is 1 from the next paint on.
    float percentage() const noexcept { return percentage_; }
    void setPercentage(float percentage) noexcept { percentage_ = percentage; }

protected:
    void draw(Painting::Context& context) override;

private:
    float percentage_ = 0;
};

/// Points of a bar `width` wide that a fraction fills: anything at all shows one.
double filledWidth(float fraction, double width) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
