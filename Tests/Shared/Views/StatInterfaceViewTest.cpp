#include "Shared/Views/StatInterfaceView.h"

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceActionView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

constexpr std::uint32_t kLightGround = 0xFFFAFAFA, kDarkGround = 0xFF282828;
constexpr Rect kRow{0, 0, 100, 20};

class StatInterfaceViewTest : public testing::Test {
protected:
    StatInterfaceViewTest() {
        VTRSetBoolForKey("Theme-SeperateStyles", false);
        setTheme(0);
    }
    static void setTheme(std::int64_t theme) { VTRSetIntegerForKey("DropdownTheme", theme); }

    test::World world;
};

Painting::ImageSurface painted(View& view) {
    Painting::ImageSurface surface(view.frame().size(), 1);
    Painting::Context context = surface.context(view.isFlipped() ? Painting::Origin::upperLeft
                                                                 : Painting::Origin::lowerLeft);
    view.display(context);
    return surface;
}

bool isBluish(std::uint32_t pixel) { return (pixel & 0xFF) > (pixel >> 16 & 0xFF) + 0x20; }

/// How many pixels of the picture's column in the middle are part of a pill.
int pillHeight(const Painting::ImageSurface& surface) {
    int height = 0;
    for (int y = 0; y < surface.heightPixels(); ++y)
        height += isBluish(surface.pixel(surface.widthPixels() / 2, y)) ? 1 : 0;
    return height;
}

class CountingView final : public View {
public:
    using View::View;
    void updateColors() override { ++updates; }
    void setMenuItemHighlighted(bool) override { ++highlights; }
    int updates = 0, highlights = 0;
};

class RecordingWindow final : public ViewWindow {
public:
    void setNeedsDisplay(View&, View&) override {}
    void setBackground(const std::optional<Colour>& colour) override { background = colour; }
    std::optional<Colour> background;
};

}  // namespace

TEST_F(StatInterfaceViewTest, ARowPaintsTheGroundOfItsTheme) {
    StatInterfaceFlippedView view(kRow);
    EXPECT_EQ(painted(view).pixel(50, 10), kLightGround);
    setTheme(1);
    EXPECT_EQ(painted(view).pixel(50, 10), kDarkGround);
}

TEST_F(StatInterfaceViewTest, OnlyARowThatCanBeHighlightedShowsAPill) {
    StatInterfaceFlippedView view(kRow);
    view.setMenuItemHighlighted(true);
    EXPECT_EQ(pillHeight(painted(view)), 0);
    view.setHighlightable(true);
    EXPECT_EQ(pillHeight(painted(view)), 20);
    EXPECT_EQ(painted(view).pixel(1, 10), kLightGround) << "two points from the edge";
    view.setMenuItemHighlighted(false);
    EXPECT_EQ(pillHeight(painted(view)), 0);
}

TEST_F(StatInterfaceViewTest, ThePillIsLighterAboveThanBelowInEitherKindOfView) {
    StatInterfaceFlippedView flipped(kRow);
    StatInterfaceView plain(kRow);
    for (StatInterfaceView* const view : {static_cast<StatInterfaceView*>(&flipped), &plain}) {
        view->setHighlightable(true);
        view->setMenuItemHighlighted(true);
        const auto picture = painted(*view);
        EXPECT_GT(picture.pixel(50, 1) >> 8 & 0xFF, picture.pixel(50, 18) >> 8 & 0xFF);
    }
}

TEST_F(StatInterfaceViewTest, APillOfItsOwnExtentShowsOnARowThatIsntHighlighted) {
    StatInterfaceFlippedView view(kRow);
    view.setCustomHighlightRect(true);
    view.setHighlightRect({0, 15, 0, 17});
    EXPECT_EQ(pillHeight(painted(view)), 5) << "the row cuts off the rest";
}

TEST_F(StatInterfaceViewTest, WithoutBackgroundNothingIsPaintedWhateverTheFlags) {
    StatInterfaceFlippedView view(kRow);
    view.setHighlightable(true);
    view.setMenuItemHighlighted(true);
    view.setCustomHighlightRect(true);
    view.setHighlightRect({0, 0, 0, 20});
    view.setBackgroundDisabled(true);
    EXPECT_EQ(painted(view).pixel(50, 10), 0u);
}

TEST_F(StatInterfaceViewTest, AContainerHasAPlainViewInsideThatFollowsIt) {
    const auto view =
        StatInterfaceView::initContainerWithFrame<StatInterfaceFlippedView>({5, 5, 100, 20});
    ASSERT_EQ(view->subviews().size(), 1u);
    const auto& inner = dynamic_cast<const StatInterfaceView&>(*view->subviews().front());
    EXPECT_EQ(inner.className(), "StatInterfaceView");
    EXPECT_EQ(inner.frame(), kRow);
    EXPECT_TRUE(inner.backgroundDisabled());
    EXPECT_FALSE(inner.highlightable());

    view->setFrameSize({150, 30});
    EXPECT_EQ(inner.frame(), (Rect{0, 0, 150, 30}));
}

TEST_F(StatInterfaceViewTest, AThemeReachesViewsAtAnyDepthOnce) {
    StatInterfaceView outer(kRow);
    const auto middle = std::make_shared<StatInterfaceView>(kRow);
    const auto plain = std::make_shared<View>(kRow);
    const auto inner = std::make_shared<CountingView>(kRow);
    plain->addSubview(inner);
    middle->addSubview(plain);
    outer.addSubview(middle);

    outer.updateColors();

    EXPECT_EQ(inner->updates, 1);
}

TEST_F(StatInterfaceViewTest, AHighlightReachesTheViewsInside) {
    StatInterfaceView outer(kRow);
    const auto middle = std::make_shared<StatInterfaceView>(kRow);
    const auto label = std::make_shared<StatInterfaceTextFieldLabel>(kRow);
    const auto beyond = std::make_shared<CountingView>(kRow);
    const auto plain = std::make_shared<View>(kRow);
    plain->addSubview(beyond);
    middle->addSubview(label);
    outer.addSubview(middle);
    outer.addSubview(plain);

    outer.setMenuItemHighlighted(true);

    EXPECT_EQ(label->textColor(), kWhite);
    EXPECT_EQ(beyond->highlights, 0) << "a view without the property passes nothing on";
}

TEST_F(StatInterfaceViewTest, OnlyTheFirstRowGivesTheWindowAGround) {
    RecordingWindow window;
    StatInterfaceView second(kRow);
    second.setItemIndex(1);
    second.setWindow(&window);
    EXPECT_EQ(window.background, std::nullopt);

    StatInterfaceView first(kRow);
    first.setWindow(&window);
    EXPECT_EQ(window.background, menuBackground());
    first.removeLayer();
    EXPECT_EQ(window.background, std::nullopt);
}

TEST_F(StatInterfaceViewTest, ASpacerIsALineAcrossTheMiddle) {
    SpacerView view({0, 0, 50, 12});
    for (const auto& [theme, line] : {std::pair{0, 0xFFE6E6E6u}, std::pair{1, 0xFF383838u}}) {
        setTheme(theme);
        const auto picture = painted(view);
        EXPECT_EQ(picture.pixel(25, 5), line) << "6 points above the lower edge";
        EXPECT_NE(picture.pixel(25, 4), line);
        EXPECT_NE(picture.pixel(25, 6), line);
    }
}

TEST_F(StatInterfaceViewTest, AMainHeaderLeavesThreePlainPointsAbove) {
    HeaderView view({0, 0, 100, 23});
    view.setType(1);
    const auto picture = painted(view);
    for (int y = 0; y < 3; ++y)
        EXPECT_EQ(picture.pixel(1, y), kLightGround);
    EXPECT_NE(picture.pixel(1, 20), kLightGround);
    EXPECT_EQ(picture.pixel(1, 22), 0xFFE6E6E6u) << "the line along the lower edge";
}

TEST_F(StatInterfaceViewTest, AHeadersTitleIsBlueOnTheGroundAndWhiteOnBlue) {
    const auto darkest = [](HeaderView& view) {
        const auto picture = painted(view);
        int different = 0;
        for (int y = 0; y < 18; ++y)
            for (int x = 20; x < 80; ++x)
                different += picture.pixel(x, y) != picture.pixel(1, y) ? 1 : 0;
        return different;
    };
    HeaderView view({0, 0, 100, 20});
    EXPECT_EQ(darkest(view), 0);
    view.setTitle("CORES");
    EXPECT_GT(darkest(view), 20);
    view.setType(2);
    EXPECT_GT(darkest(view), 20);
    EXPECT_TRUE(isBluish(painted(view).pixel(1, 10)));
}

TEST_F(StatInterfaceViewTest, WhatHasNoGroundOfItsOwnSaysSo) {
    EXPECT_TRUE(StatInterfaceView(kRow).useLayers());
    EXPECT_FALSE(HeaderView(kRow).useLayers());
    EXPECT_FALSE(SpacerView(kRow).useLayers());
    EXPECT_FALSE(StatInterfaceActionView(kRow).useLayers());
}

TEST_F(StatInterfaceViewTest, AnActionsTextIsClicked) {
    StatInterfaceActionView view(kRow);
    view.mouseUp(1);  // without action
    int clicks = 0;
    view.setAction([&clicks] { ++clicks; });
    view.mouseUp(2);
    EXPECT_EQ(clicks, 1);
}

TEST_F(StatInterfaceViewTest, AnActionsTextHasInkByThemeActionAndHighlight) {
    StatInterfaceActionView view(kRow);
    view.setTitle("MMMM");
    const auto darkestBlue = [&view] {
        const auto picture = painted(view);
        std::uint32_t least = 0xFF, greatest = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 8; x < 60; ++x) {
                least = std::min(least, picture.pixel(x, y) & 0xFF);
                greatest = std::max(greatest, picture.pixel(x, y) & 0xFF);
            }
        return std::pair(least, greatest);
    };
    const auto inactive = darkestBlue().first;
    view.setAction([] {});
    EXPECT_LT(darkestBlue().first, inactive);
    setTheme(1);
    EXPECT_GT(darkestBlue().second, 0xE0u);
    view.setHighlightable(true);
    view.setMenuItemHighlighted(true);
    EXPECT_EQ(darkestBlue().second, 0xFFu);
}

TEST_F(StatInterfaceViewTest, TextsInsideAreTranslated) {
    world.machine.directories.setResources(VANTOR_SOURCE_DIR "/Resources");
    world.machine.regionalSettings.setLocale("de");
    StatInterfaceView view(kRow);
    const auto label = std::make_shared<StatInterfaceTextFieldLabel>(kRow);
    label->setStringValue("LAST HOUR");
    view.addSubview(label);

    view.localizeWithBundle("common");

    EXPECT_EQ(label->stringValue(), "LETZTE STUNDE");
}

}  // namespace vantor
