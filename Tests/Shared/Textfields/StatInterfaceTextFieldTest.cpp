#include "Shared/Textfields/StatInterfaceTextField.h"

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/Views/DropdownTheme.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

constexpr Colour kOwn{0.1, 0.2, 0.3, 1};

class StatInterfaceTextFieldTest : public testing::Test {
protected:
    StatInterfaceTextFieldTest() {
        VTRSetBoolForKey("Theme-SeperateStyles", false);
        setTheme(0);
    }
    static void setTheme(std::int64_t theme) { VTRSetIntegerForKey("DropdownTheme", theme); }

    test::World world;
    StatInterfaceTextFieldLabel label{Rect{0, 0, 100, 15}};
    StatInterfaceTextFieldValue value{Rect{0, 0, 100, 15}};
};

}  // namespace

TEST_F(StatInterfaceTextFieldTest, NothingShowsAsAnEmptyText) {
    label.setStringValue("text");
    label.setStringValue(std::nullopt);
    EXPECT_EQ(label.stringValue(), "");
}

TEST_F(StatInterfaceTextFieldTest, AColourSetDuringAHighlightShowsWhenItEnds) {
    label.updateColors();
    label.setMenuItemHighlighted(true);
    label.setNormalTextColor(kOwn);
    EXPECT_EQ(label.textColor(), kWhite);

    label.setMenuItemHighlighted(false);
    EXPECT_EQ(label.textColor(), kOwn);
}

TEST_F(StatInterfaceTextFieldTest, TheDefaultColourWaitsForTheEndOfAHighlightToo) {
    label.setNormalTextColor(kOwn);
    label.setMenuItemHighlighted(true);
    label.setDefaultColor();
    EXPECT_EQ(label.textColor(), kWhite);
    label.setMenuItemHighlighted(false);
    EXPECT_EQ(label.textColor(), grey(0.49));
}

TEST_F(StatInterfaceTextFieldTest, TheSameHighlightTwiceLeavesTheColour) {
    label.setMenuItemHighlighted(true);
    label.setTextColor(kOwn);
    label.setMenuItemHighlighted(true);
    EXPECT_EQ(label.textColor(), kOwn);

    label.setMenuItemHighlighted(false);
    label.setTextColor(kOwn);
    label.setMenuItemHighlighted(false);
    EXPECT_EQ(label.textColor(), kOwn);
}

TEST_F(StatInterfaceTextFieldTest, ResettingKeepsTheColourToComeBackTo) {
    label.setNormalTextColor(kOwn);
    label.resetColor();
    EXPECT_EQ(label.textColor(), grey(0.49));
    label.setMenuItemHighlighted(true);
    label.setMenuItemHighlighted(false);
    EXPECT_EQ(label.textColor(), kOwn);
}

TEST_F(StatInterfaceTextFieldTest, ColoursFollowKindAndTheme) {
    StatInterfaceTextFieldHeader header;
    StatInterfaceTextField plain;
    EXPECT_EQ(label.defaultColor(), grey(0.49));
    EXPECT_EQ(value.defaultColor(), grey(0.247));
    EXPECT_EQ(header.defaultColor(), grey(0.247));
    EXPECT_EQ(plain.defaultColor(), kBlack);
    setTheme(1);
    EXPECT_EQ(label.defaultColor(), grey(0.58));
    EXPECT_EQ(value.defaultColor(), grey(0.788));
    EXPECT_EQ(header.defaultColor(), grey(0.788));
    EXPECT_EQ(plain.defaultColor(), kBlack);
}

TEST_F(StatInterfaceTextFieldTest, ATextsFontFollowsKindThemeAndBoldness) {
    const auto fontOf = [](StatInterfaceTextField& field) {
        field.resetColor();
        return field.font();
    };
    EXPECT_EQ(fontOf(label), vtrNormalFont(12));
    EXPECT_EQ(fontOf(value), vtrBoldFont(12)) << "bold unless told otherwise";
    value.setBold(false);
    EXPECT_EQ(fontOf(value), vtrNormalFont(12));
    value.setBold(true);
    setTheme(1);
    EXPECT_EQ(fontOf(value), vtrNormalFont(12));
    value.setAlternateFont(true);
    label.setAlternateFont(true);
    EXPECT_EQ(fontOf(value), vtrMediumFont(10));
    EXPECT_EQ(fontOf(label), vtrMediumFont(10));
}

TEST_F(StatInterfaceTextFieldTest, AHeadersFieldKeepsItsFont) {
    StatInterfaceTextFieldHeader header;
    header.setFont({.size = 30});
    header.updateColors();
    EXPECT_EQ(header.font(), Painting::Font{.size = 30});
}

TEST_F(StatInterfaceTextFieldTest, ATextThatStaysAsItIsAsksForNoPaintAndTouchesNoHeap) {
    value.setStringValue("a figure that is longer than a short text");
    Painting::ImageSurface surface({100, 15}, 1);
    Painting::Context context = surface.context(Painting::Origin::upperLeft);
    value.display(context);

    const test::AllocationCounter allocations;
    value.setStringValue("a figure that is longer than a short text");

    EXPECT_EQ(allocations.count(), 0u);
    EXPECT_FALSE(value.needsDisplay());
}

}  // namespace vantor
