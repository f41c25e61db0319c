#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Painting/Text.h"
#include "Shared/Views/View.h"

namespace vantor::inline VANTOR_MODULE {

/// One line of text in a row, at the upper edge of its frame. A concrete kind has a colour for
/// each theme and a font.
/// Thread: main. A text that stays as it is asks for no paint and touches no heap.
class StatInterfaceTextField : public View {
public:
    explicit StatInterfaceTextField(const Rect& frame = {});
    std::string_view className() const override { return "StatInterfaceTextField"; }
    bool isFlipped() const override { return true; }

    const std::string& stringValue() const noexcept { return stringValue_; }
    /// Nothing is "".
    void setStringValue(std::optional<std::string_view> text);

    virtual Colour defaultColor() const;
    /// The text is in its own colour and font again.
    void resetColor();
    /// The same, and that colour is the one to come back to after a highlight.
    void updateColors() override;
    void setDefaultColor() { setNormalTextColor(defaultColor()); }
    /// Shows when, or once, the field isn't highlighted.
    void setNormalTextColor(const Colour& colour);
    void setMenuItemHighlighted(bool highlighted) override;
    bool menuItemHighlighted() const noexcept { return menuItemHighlighted_; }

    const Painting::Font& font() const noexcept { return attributes_.font; }
    void setFont(Painting::Font font);
    const Colour& textColor() const noexcept { return attributes_.colour; }
    void setTextColor(const Colour& colour);
    Painting::Alignment alignment() const noexcept { return attributes_.alignment; }
    void setAlignment(Painting::Alignment alignment);
    /// A text that is too long ends in "…".
    void setTruncatesTail(bool truncates);

    bool bold() const noexcept { return bold_; }
    void setBold(bool bold) noexcept { bold_ = bold; }
    bool alternateFont() const noexcept { return alternateFont_; }
    void setAlternateFont(bool alternate) noexcept { alternateFont_ = alternate; }

protected:
    /// The kind's font; nothing keeps the one that the field has.
    virtual std::optional<Painting::Font> defaultFont() const { return {}; }
    void draw(Painting::Context& context) override;

private:
    std::string stringValue_;
    Painting::TextAttributes attributes_;
    Colour normalColor_ = kBlack;
    bool menuItemHighlighted_ = false, bold_ = true, alternateFont_ = false;
};

/// What a figure is called.
class StatInterfaceTextFieldLabel final : public StatInterfaceTextField {
public:
    using StatInterfaceTextField::StatInterfaceTextField;
    std::string_view className() const override { return "StatInterfaceTextFieldLabel"; }
    Colour defaultColor() const override;

protected:
    std::optional<Painting::Font> defaultFont() const override;
};

/// A figure. Bold where the theme is light, unless told otherwise.
class StatInterfaceTextFieldValue final : public StatInterfaceTextField {
public:
    using StatInterfaceTextField::StatInterfaceTextField;
    std::string_view className() const override { return "StatInterfaceTextFieldValue"; }
    Colour defaultColor() const override;

protected:
    std::optional<Painting::Font> defaultFont() const override;
};

class StatInterfaceTextFieldHeader final : public StatInterfaceTextField {
public:
    using StatInterfaceTextField::StatInterfaceTextField;
    std::string_view className() const override { return "StatInterfaceTextFieldHeader"; }
    Colour defaultColor() const override;
};

}  // namespace vantor::inline VANTOR_MODULE
