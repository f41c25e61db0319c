#include "Shared/Views/MenubarColors.h"

#include <gtest/gtest.h>

#include "Shared/VTRPreferences.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using Painting::Gradient;

class MenubarColorsTest : public testing::Test {
protected:
    static GraphDictionary gradientGraph() {
        GraphDictionary graph;
        graph.gradient = true;
        return graph;
    }
    static GraphDictionary flatGraph(int palette) {
        GraphDictionary graph;
        graph.defaultColor = palette;
        return graph;
    }

    test::World world;
};

TEST_F(MenubarColorsTest, AnUnknownPaletteNumberIsTheFirstColour) {
    EXPECT_EQ(fillColorForGraph(flatGraph(7)), fillColorForGraph(flatGraph(0)));
    EXPECT_EQ(fillColorForGraph(flatGraph(0)), (Colour{0.098, 0.58, 0.941, 1}));
    EXPECT_EQ(fillColorForGraph(flatGraph(1)), (Colour{1, 0.164, 0.164, 1}));
}

TEST_F(MenubarColorsTest, TheWhiteSkinIsWhiteInBothThemes) {
    VTRSetIntegerForKey("MenubarSkinColor", 8);
    for (const int theme : {0, 1}) {
        VTRSetIntegerForKey("MenubarTheme", theme);
        EXPECT_EQ(gradientForGraph(gradientGraph()), (Gradient{kWhite, kWhite}));
    }
}

TEST_F(MenubarColorsTest, TheDarkPanelsHaveBrighterGradients) {
    EXPECT_EQ(gradientForGraph(gradientGraph()).start, (Colour{0.192, 0.67, 1, 1}));
    VTRSetIntegerForKey("MenubarTheme", 0);
    EXPECT_EQ(gradientForGraph(gradientGraph()).start, (Colour{0.098, 0.58, 0.941, 1}));
    VTRSetIntegerForKey("MenubarSkinColor", 42);
    EXPECT_EQ(gradientForGraph(gradientGraph()).start, (Colour{0.192, 0.67, 1, 1}));
}

TEST_F(MenubarColorsTest, OnlyAnOverrideOfOneTakesTheCustomColour) {
    GraphDictionary graph = flatGraph(1);
    graph.custom = {"CPU_MenubarGraphCustomColors", "CPU_MenubarGraphUser"};
    VTRSetObjectForKey("CPU_MenubarGraphUser", "0 1 0 0.5");
    VTRSetIntegerForKey("CPU_MenubarGraphCustomColors", 2);
    EXPECT_EQ(fillColorForGraph(graph), (Colour{1, 0.164, 0.164, 1}));
    VTRSetIntegerForKey("CPU_MenubarGraphCustomColors", 1);
    EXPECT_EQ(fillColorForGraph(graph), (Colour{0, 1, 0, 0.5}));
    EXPECT_EQ(gradientForGraph(graph), (Gradient{{0, 1, 0, 0.5}, {0, 1, 0, 0.5}}));
    EXPECT_EQ(strokeColorForGraph(graph), (Colour{0, 1, 0, 0.5}));
}

TEST_F(MenubarColorsTest, StrokesFollowTheTheme) {
    GraphDictionary graph;
    graph.defaultStroke = 2;
    EXPECT_EQ(strokeColorForGraph(graph), (Colour{0.192, 0.67, 1, 1}));
    graph.defaultStroke = 1;
    EXPECT_EQ(strokeColorForGraph(graph), (Colour{1, 0.254, 0.254, 1}));
    VTRSetIntegerForKey("MenubarTheme", 0);
    EXPECT_EQ(strokeColorForGraph(graph), (Colour{1, 0.164, 0.164, 1}));
    graph.defaultStroke = 9;
    EXPECT_EQ(strokeColorForGraph(graph), (Colour{0.192, 0.67, 1, 1}));
}

TEST_F(MenubarColorsTest, SeparateStylesPickTheSkinByAppearance) {
    VTRSetBoolForKey("Theme-SeperateStyles", true);
    VTRSetIntegerForKey("MenubarSkinColor-Light", 3);
    VTRSetIntegerForKey("MenubarSkinColor-Dark", 4);
    EXPECT_EQ(skinColor(), 3);
    world.machine.appearance.setDark(true);
    VTRPreferences::sharedPreferences()->updateMenubarTheme();
    EXPECT_EQ(skinColor(), 4);
}

TEST_F(MenubarColorsTest, OnADarkBarTheThemeReadsAsZero) {
    EXPECT_EQ(menubarTheme(), 1);
    world.machine.appearance.setDark(true);
    VTRPreferences::sharedPreferences()->updateMenubarTheme();
    EXPECT_EQ(menubarTheme(), 0);
}

TEST_F(MenubarColorsTest, AnOpenMenuKeepsTheColoursOfTheDarkPanels) {
    const BarState open{.isMenuDown = true};
    const GraphInk ink = inkForGraph(flatGraph(1), GraphKind::other, open);
    EXPECT_EQ(std::get<Colour>(ink), (Colour{1, 0.164, 0.164, 1}));
}

TEST_F(MenubarColorsTest, AnOpenMenuTurnsThePlainThemeWhite) {
    VTRSetIntegerForKey("MenubarTheme", 0);
    const BarState open{.isMenuDown = true};
    EXPECT_EQ(std::get<Colour>(inkForGraph(flatGraph(1), GraphKind::other, open)), kWhite);
    const BarState dark{.isMenuDown = true, .isMenubarDark = true};
    EXPECT_NE(std::get<Colour>(inkForGraph(flatGraph(1), GraphKind::other, dark)), kWhite);
    EXPECT_EQ(std::get<Colour>(inkForGraph(flatGraph(1), GraphKind::pie, dark)), kWhite);
}

TEST_F(MenubarColorsTest, ALightHighlightTurnsAllButThePieBlack) {
    const BarState contrast{.isMenuDown = true, .isMenubarDark = true, .increaseContrast = true};
    EXPECT_EQ(std::get<Colour>(inkForGraph(flatGraph(1), GraphKind::other, contrast)), kBlack);
    EXPECT_NE(std::get<Colour>(inkForGraph(flatGraph(1), GraphKind::pie, contrast)), kBlack);
}

TEST_F(MenubarColorsTest, WithoutAPaintAGraphTakesTheColourThatIsSet) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(
        inkForGraph(GraphDictionary{}, GraphKind::other, {})));
}

TEST_F(MenubarColorsTest, LabelsAreWhiteOnDarkBarsAndOpenMenusButDarkOnALightHighlight) {
    const auto noSkin = []() -> std::int64_t {
        ADD_FAILURE() << "a system with dark bars asks for no skin";
        return 8;
    };
    const BarState plain, dark{.isMenubarDark = true}, open{.isMenuDown = true},
        openDark{.isMenuDown = true, .isMenubarDark = true},
        openContrast{.isMenuDown = true, .increaseContrast = true},
        lightHighlight{.isMenuDown = true, .isMenubarDark = true, .increaseContrast = true};
    EXPECT_FALSE(plain.isInkWhite(noSkin));
    EXPECT_TRUE(dark.isInkWhite(noSkin));
    EXPECT_TRUE(open.isInkWhite(noSkin));
    EXPECT_TRUE(openDark.isInkWhite(noSkin));
    EXPECT_TRUE(openContrast.isInkWhite(noSkin));
    EXPECT_FALSE(lightHighlight.isInkWhite(noSkin));
    EXPECT_TRUE(lightHighlight.isInkWhite(noSkin, LightHighlightInk::white));
}

TEST_F(MenubarColorsTest, BeforeDarkBarsTheWhiteSkinMakesLabelsWhite) {
    BarState old;
    old.isYosemite = false;
    EXPECT_TRUE(old.isInkWhite([] { return std::int64_t{8}; }));
    EXPECT_FALSE(old.isInkWhite([] { return std::int64_t{7}; }));
}

TEST_F(MenubarColorsTest, OnlyLabelsKnowOfSeparateStyles) {
    VTRSetBoolForKey("Theme-SeperateStyles", true);
    VTRSetIntegerForKey("MenubarSkinColor", 8);
    VTRSetIntegerForKey("MenubarSkinColor-Light", 3);
    EXPECT_EQ(skinColor(), 3);
    EXPECT_EQ(storedSkinColor(), 8);
}

}  // namespace
}  // namespace vantor
