#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Shared/Views/View.h"

namespace vantor::inline VANTOR_MODULE {

/// A row of the dropdown, and every container in one. It paints the menu's background and, where
/// the pointer is on the row, a pill.
/// Thread: main.
class StatInterfaceView : public View {
public:
    using View::View;

    /// A view with a plain inner one, as large as itself, that follows it in both directions.
    template <class Kind = StatInterfaceView>
    static std::shared_ptr<Kind> initContainerWithFrame(const Rect& frame) {
        auto view = std::make_shared<Kind>(frame);
        view->addInnerView();
        return view;
    }

    std::string_view className() const override { return "StatInterfaceView"; }

    /// Tells every view inside, depth first, that the theme may be another.
    void updateColors() override;
    /// Tells the views directly inside, too: texts turn white.
    void setMenuItemHighlighted(bool highlighted) override;
    bool menuItemHighlighted() const noexcept { return menuItemHighlighted_; }
    /// Takes the menu's background away that this row gave it.
    void removeLayer();
    virtual bool useLayers() const { return true; }

    bool highlightable() const noexcept { return highlightable_; }
    void setHighlightable(bool highlightable) noexcept { highlightable_ = highlightable; }
    /// Paints nothing at all: the row around it does.
    bool backgroundDisabled() const noexcept { return backgroundDisabled_; }
    void setBackgroundDisabled(bool disabled) noexcept { backgroundDisabled_ = disabled; }
    /// The pill stands where `highlightRect` says, also on a row that isn't highlighted.
    bool customHighlightRect() const noexcept { return customHighlightRect_; }
    void setCustomHighlightRect(bool custom) noexcept { customHighlightRect_ = custom; }
    const Rect& highlightRect() const noexcept { return highlightRect_; }
    void setHighlightRect(const Rect& rect) noexcept { highlightRect_ = rect; }
    std::int64_t itemIndex() const noexcept { return itemIndex_; }
    void setItemIndex(std::int64_t index) noexcept { itemIndex_ = index; }

    /// Puts the words of a table in the place of the texts inside.
    void localizeWithBundle(std::string_view table);

protected:
    void draw(Painting::Context& context) override;
    void viewDidMoveToWindow() override;

private:
    void addInnerView();
    void updateColorsForView(View& view);

    bool highlightable_ = false, menuItemHighlighted_ = false, backgroundDisabled_ = false;
    bool customHighlightRect_ = false;
    Rect highlightRect_;
    std::int64_t itemIndex_ = 0;
    ViewWindow* backgroundWindow_ = nullptr;  // which has its background from this row
};

/// A container whose y grows downwards: nearly all rows.
class StatInterfaceFlippedView : public StatInterfaceView {
public:
    using StatInterfaceView::StatInterfaceView;
    std::string_view className() const override { return "StatInterfaceFlippedView"; }
    bool isFlipped() const override { return true; }
};

/// A hairline across the middle.
class SpacerView final : public StatInterfaceView {
public:
    using StatInterfaceView::StatInterfaceView;
    std::string_view className() const override { return "SpacerView"; }
    bool useLayers() const override { return false; }

protected:
    void draw(Painting::Context& context) override;
};

/// The head of a section.
class HeaderView final : public StatInterfaceView {
public:
    using StatInterfaceView::StatInterfaceView;
    std::string_view className() const override { return "HeaderView"; }
    bool useLayers() const override { return false; }

    const std::string& title() const noexcept { return title_; }
    void setTitle(std::string title);
    /// 0 and 1 are on the menu's ground, 2 on blue.
    std::int64_t type() const noexcept { return type_; }
    void setType(std::int64_t type) noexcept { type_ = type; }

protected:
    void draw(Painting::Context& context) override;

private:
    void drawOnGround(Painting::Context& context) const;
    void drawOnBlue(Painting::Context& context) const;

    std::string title_;
    std::int64_t type_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
