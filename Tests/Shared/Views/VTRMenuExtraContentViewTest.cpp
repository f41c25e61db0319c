#include "Shared/Views/VTRMenuExtraContentView.h"

#include <filesystem>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Shared/Collectors/ItemReadings.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/BarCanvas.h"
#include "Tests/Support/FakeSamples.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::BarCanvas;
using test::FakeSamples;

class VTRMenuExtraContentViewTest : public testing::TestWithParam<int> {
protected:
    VTRMenuExtraContentViewTest() {
        GraphDictionary graph;
        graph.keys = {0};
        graph.defaultColor = 1;
        config().historyGraphs = config().verticalGraphs = config().pieGraphs = {graph};
        config().historyGraphWidth = "CPU_MenubarGraphWidth";
        TextItem percentage;
        percentage.type = static_cast<int>(TextType::percentage);
        percentage.keys = {0};
        percentage.font = "CPU_MenubarTextSize";
        percentage.color = "CPU_MenubarTextColor";
        percentage.shadow = "CPU_MenubarTextShadowColor";
        TextItem formatted = percentage;
        formatted.type = static_cast<int>(TextType::formatted);
        formatted.format = "%.2f";
        config().textItems = {{"percentage", percentage}, {"load", formatted}};
    }

    MenuExtraConfig& config() { return view.mutableConfig(); }
    int scale() const { return GetParam(); }
    void setDark(bool dark) {
        world.machine.appearance.setDark(dark);
        VTRPreferences::sharedPreferences()->updateMenubarTheme();
    }
    int verticalHeight(double value) {
        BarCanvas canvas(20, scale());
        const FakeSamples samples{value};
        const StatSamples* const collectors[] = {&samples};
        EXPECT_EQ(view.drawVerticalGraphWithOffset(canvas.context, 0, collectors), 13);
        return canvas.heightAt(4, 3);
    }
    int combinedHeight(double value) {
        BarCanvas canvas(20, scale());
        const FakeSamples samples{value};
        const StatSamples* const collectors[] = {&samples};
        EXPECT_EQ(view.drawCombinedVerticalGraphWithOffset(canvas.context, 0, collectors), 11);
        return canvas.heightAt(3, 3);
    }
    std::int64_t textWidth(std::string_view key, double value) {
        BarCanvas canvas(80, scale());
        const FakeSamples samples{value};
        const StatSamples* const collectors[] = {&samples};
        return view.drawTextAtOffset(canvas.context, 0, collectors, key);
    }

    test::World world;
    VTRMenuExtraContentView view{{0, 0, 20, 22}, nullptr};
};

INSTANTIATE_TEST_SUITE_P(Scales, VTRMenuExtraContentViewTest, testing::Values(1, 2));

TEST_P(VTRMenuExtraContentViewTest, AnyLoadAtAllShowsOnePointOfAVerticalBar) {
    EXPECT_EQ(verticalHeight(0.001), 1);
    EXPECT_EQ(verticalHeight(0), 0);
    EXPECT_EQ(verticalHeight(0.99), 15);
    EXPECT_EQ(verticalHeight(1), 16);
    EXPECT_EQ(verticalHeight(7), 16);  // the clip cuts
}

TEST_P(VTRMenuExtraContentViewTest, ACombinedBarRoundsUp) {
    EXPECT_EQ(combinedHeight(0.001), 1);
    EXPECT_EQ(combinedHeight(0), 0);
    EXPECT_EQ(combinedHeight(0.5), 8);
    EXPECT_EQ(combinedHeight(0.99), 16);
}

TEST_P(VTRMenuExtraContentViewTest, AVerticalBarIsSevenWide) {
    BarCanvas canvas(20, scale());
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    view.drawVerticalGraphWithOffset(canvas.context, 3, collectors);
    EXPECT_FALSE(canvas.painted(3, 10));
    EXPECT_TRUE(canvas.painted(4, 10));
    EXPECT_TRUE(canvas.painted(10, 10));
    EXPECT_FALSE(canvas.painted(11, 10));
    EXPECT_FALSE(canvas.painted(5, 2));
    EXPECT_FALSE(canvas.painted(5, 19));
}

TEST_P(VTRMenuExtraContentViewTest, EightCombinedBarsStandOnePointApart) {
    BarCanvas canvas(60, scale());
    const FakeSamples samples{1};
    const std::vector<const StatSamples*> collectors(8, &samples);
    EXPECT_EQ(view.drawCombinedVerticalGraphWithOffset(canvas.context, 0, collectors), 53);
    for (int bar = 0; bar < 8; ++bar) {
        EXPECT_FALSE(canvas.painted(6 * bar, 10));
        EXPECT_TRUE(canvas.painted(6 * bar + 1, 10));
        EXPECT_TRUE(canvas.painted(6 * bar + 5, 10));
    }
    EXPECT_FALSE(canvas.painted(48, 10));
}

TEST_P(VTRMenuExtraContentViewTest, AHistoryShowsTheNewestSampleAtItsRight) {
    BarCanvas canvas(40, scale());
    FakeSamples samples(1);
    for (int sample = 0; sample < 20; ++sample)
        samples.add({sample >= 10 ? 1.0 : 0.0});
    const StatSamples* const collectors[] = {&samples};
    EXPECT_EQ(view.drawHistoryGraphWithOffset(canvas.context, 0, collectors), 34);
    EXPECT_EQ(canvas.heightAt(27.5, 3), 16);  // record 0 stands at the right edge
    EXPECT_EQ(canvas.heightAt(21, 3), 16);
    EXPECT_EQ(canvas.heightAt(17, 3), 0);
    EXPECT_FALSE(canvas.painted(29.5, 10));  // outside the band
}

TEST_P(VTRMenuExtraContentViewTest, AFreshHistoryShowsNothing) {
    BarCanvas canvas(40, scale());
    const FakeSamples samples;
    const StatSamples* const collectors[] = {&samples};
    view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
    for (double x = 0; x < 40; ++x)
        EXPECT_EQ(canvas.heightAt(x, 3), 0) << x;
}

TEST_P(VTRMenuExtraContentViewTest, AMissingSamplePullsTheOutlineDown) {
    BarCanvas canvas(40, scale());
    FakeSamples samples(1);
    for (int sample = 0; sample < 40; ++sample)
        samples.add({1});
    for (std::size_t gap : {9, 10, 11})
        samples.ring.setEmpty(gap, 1);
    const StatSamples* const collectors[] = {&samples};
    view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
    EXPECT_EQ(canvas.heightAt(1 + 28 - 10, 3), 0);
    EXPECT_EQ(canvas.heightAt(1 + 28 - 14, 3), 16);
}

TEST_P(VTRMenuExtraContentViewTest, AFlippedHistoryIsALineAtItsTop) {
    config().historyGraphs[0].flip = true;
    BarCanvas canvas(40, scale());
    FakeSamples samples(1);
    for (int sample = 0; sample < 40; ++sample)
        samples.add({0.5});
    const StatSamples* const collectors[] = {&samples};
    view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
    EXPECT_FALSE(canvas.painted(15, 10));
}

TEST_P(VTRMenuExtraContentViewTest, WidthsThatCannotBeAnswerAsComputed) {
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    for (const std::int64_t width : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{100000}}) {
        VTRSetIntegerForKey("CPU_MenubarGraphWidth", width);
        BarCanvas canvas(40, scale());
        EXPECT_EQ(view.drawHistoryGraphWithOffset(canvas.context, 0, collectors), width + 4);
        EXPECT_FALSE(canvas.painted(20, 4));
    }
}

TEST_P(VTRMenuExtraContentViewTest, APieGrowsClockwiseFromTwelve) {
    BarCanvas canvas(22, scale());
    const FakeSamples samples{0.25};
    const StatSamples* const collectors[] = {&samples};
    EXPECT_EQ(view.drawPieGraphWithOffset(canvas.context, 0, collectors), 22);
    EXPECT_TRUE(canvas.painted(12, 14));  // the upper right quarter
    EXPECT_FALSE(canvas.painted(12, 7));
    EXPECT_FALSE(canvas.painted(5, 14));
    EXPECT_FALSE(canvas.painted(5, 7));
}

TEST_P(VTRMenuExtraContentViewTest, AnEmptyPieHasNoSliceAndAFullOneIsRound) {
    const FakeSamples none{0}, all{1};
    BarCanvas empty(22, scale()), full(22, scale());
    const StatSamples* const first[] = {&none};
    view.drawPieGraphWithOffset(empty.context, 0, first);
    const StatSamples* const second[] = {&all};
    view.drawPieGraphWithOffset(full.context, 0, second);
    for (double x = 1; x < 18; ++x)
        EXPECT_FALSE(empty.painted(x, 14)) << x;
    EXPECT_TRUE(full.painted(5, 7));
    EXPECT_TRUE(full.painted(5, 14));
    EXPECT_TRUE(full.painted(12, 7));
    EXPECT_FALSE(full.painted(0, 11));
}

TEST_P(VTRMenuExtraContentViewTest, AnOpenMenuOnThePlainThemePaintsWhite) {
    VTRSetIntegerForKey("MenubarTheme", 0);
    view.setIsMenuDown(true);
    BarCanvas canvas(20, scale());
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    view.drawVerticalGraphWithOffset(canvas.context, 0, collectors);
    EXPECT_EQ(canvas.pixel(4, 10), test::kOpaqueWhite);
}

TEST_P(VTRMenuExtraContentViewTest, TheClipOfOneGraphDoesNotReachTheNext) {
    BarCanvas canvas(60, scale());
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    view.drawVerticalGraphWithOffset(canvas.context, 0, collectors);
    view.drawVerticalGraphWithOffset(canvas.context, 13, collectors);
    EXPECT_TRUE(canvas.painted(16, 10));
}

TEST_P(VTRMenuExtraContentViewTest, ThePercentageKeepsOneWidth) {
    EXPECT_EQ(textWidth("percentage", 0.4), textWidth("percentage", 99.6));
    EXPECT_EQ(textWidth("percentage", 0), textWidth("percentage", 250));
}

TEST_P(VTRMenuExtraContentViewTest, TheLoadFollowsItsText) {
    EXPECT_LT(textWidth("load", 0.05), textWidth("load", 12.34));
}

TEST_P(VTRMenuExtraContentViewTest, AnUnknownTextTakesNoRoom) {
    EXPECT_EQ(textWidth("nothing", 1), 0);
    config().textItems["odd"].type = 9;
    EXPECT_EQ(textWidth("odd", 1), 0);
}

TEST_P(VTRMenuExtraContentViewTest, AFontOutsideItsRangeIsThirteen) {
    EXPECT_EQ(VTRMenuExtraContentView::fontWithSize(7).size, 13);
    EXPECT_EQ(VTRMenuExtraContentView::fontWithSize(17).size, 13);
    EXPECT_EQ(VTRMenuExtraContentView::fontWithSize(8).size, 8);
    EXPECT_EQ(VTRMenuExtraContentView::fontWithSize(16).size, 16);
}

TEST_P(VTRMenuExtraContentViewTest, AnOpenMenuHasWhiteTextWithoutShadow) {
    view.setIsMenuDown(true);
    const Painting::TextAttributes& attributes = view.percentageAttributes("percentage");
    EXPECT_EQ(attributes.colour, kWhite);
    EXPECT_FALSE(attributes.shadow);
}

TEST_P(VTRMenuExtraContentViewTest, ALightBarHasDarkTextWithAShadowBelow) {
    const Painting::TextAttributes& attributes = view.percentageAttributes("percentage");
    EXPECT_EQ(attributes.colour, (Colour{0.11F, 0.11F, 0.11F, 1}));
    ASSERT_TRUE(attributes.shadow);
    EXPECT_EQ(attributes.shadow->offset, (Size{0, -1}));
    EXPECT_EQ(attributes.shadow->colour, (Colour{1, 1, 1, 0.5}));
    EXPECT_TRUE(attributes.font.tabularDigits);
}

TEST_P(VTRMenuExtraContentViewTest, ADarkBarHasTheDarkColourAndNoShadow) {
    setDark(true);
    VTRSetObjectForKey("CPU_MenubarTextShadowColor-Dark", "1 0 0 1");
    const Painting::TextAttributes& attributes = view.percentageAttributes("percentage");
    EXPECT_EQ(attributes.colour, kWhite);
    EXPECT_FALSE(attributes.shadow);
    EXPECT_TRUE(view.smallTextAttributes("load").shadow);  // small texts do
}

TEST_P(VTRMenuExtraContentViewTest, AttributesAreMadeOnceForEachStateOfTheMenu) {
    view.percentageAttributes("percentage");
    view.setIsMenuDown(true);
    view.percentageAttributes("percentage");
    EXPECT_EQ(view.keptTextAttributes(), 2U);
    view.setIsMenuDown(false);
    view.percentageAttributes("percentage");
    EXPECT_EQ(view.keptTextAttributes(), 2U);
    view.resetTextConfig();
    EXPECT_EQ(view.keptTextAttributes(), 0U);
}

TEST_P(VTRMenuExtraContentViewTest, BackgroundsAreOpaqueOnDarkPanelsOnly) {
    EXPECT_EQ(view.alpha(), 1.0F);
    VTRSetIntegerForKey("MenubarTheme", 0);
    EXPECT_EQ(view.alpha(), 0.5F);
    setDark(true);
    VTRSetFloatForKey("MenubarGraphOpacity-DarkMode", 0.75F);
    EXPECT_EQ(view.alpha(), 0.75F);
}

TEST_P(VTRMenuExtraContentViewTest, ABatterySaysItsState) {
    const auto text = [](int state, int time) {
        return VTRMenuExtraContentView::formattedBatteryTime(state, time);
    };
    EXPECT_EQ(text(3, 20), "Not Charging");
    EXPECT_EQ(text(1, -1), "Calculating");
    EXPECT_EQ(text(1, -3), "Unknown Time");
    EXPECT_EQ(text(0, 50), "Charged");
    EXPECT_EQ(text(1, 125), "2:05");
}

TEST_P(VTRMenuExtraContentViewTest, ADotLightsUpAtItsThreshold) {
    DotItem dot;
    dot.keys = {0};
    dot.threshold = 5;
    dot.offset = 7;
    config().dotItems["dot"] = dot;
    const FakeSamples quiet{4}, busy{5};
    BarCanvas canvas(20, scale());
    const StatSamples* const first[] = {&quiet};
    EXPECT_EQ(view.drawDotWithOffset(canvas.context, 0, first, "dot"), 11);
    EXPECT_FALSE(canvas.painted(3, 11));
    const StatSamples* const second[] = {&busy};
    EXPECT_EQ(view.drawDotWithOffset(canvas.context, 0, second, "dot"), 11);
    EXPECT_TRUE(canvas.painted(3, 11));
    EXPECT_EQ(view.drawDotWithOffset(canvas.context, 0, second, "other"), 0);
}

// --- Histories, further -------------------------------------------------------------------------

TEST_P(VTRMenuExtraContentViewTest, AHistoryThirtyWideReadsThirtySamplesAndShowsTwentyNine) {
    GraphDictionary& graph = config().historyGraphs[0];
    graph.dynamicPeak = graph.individualPeaks = true;
    const auto heightWithPeakAt = [&](int age) {
        FakeSamples samples(1);
        for (int sample = 40; sample >= 0; --sample)
            samples.add({sample == age ? 4.0 : 1.0});
        const StatSamples* const collectors[] = {&samples};
        BarCanvas canvas(40, scale());
        EXPECT_EQ(view.drawHistoryGraphWithOffset(canvas.context, 0, collectors), 34);
        return canvas.heightAt(15, 3);
    };
    EXPECT_EQ(heightWithPeakAt(29), 4);   // the thirtieth is read: it gives the scale
    EXPECT_EQ(heightWithPeakAt(30), 16);  // what is older isn't
    FakeSamples oldest(1);
    for (int sample = 40; sample >= 0; --sample)
        oldest.add({sample == 29 ? 1.0 : 0.0});
    const StatSamples* const collectors[] = {&oldest};
    BarCanvas canvas(40, scale());
    view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
    for (double x = 0; x < 40; ++x)
        EXPECT_EQ(canvas.heightAt(x, 3), 0) << "and not shown at " << x;
}

TEST_P(VTRMenuExtraContentViewTest, AGraphWiderThanARingShowsNothingForTheColumnsBeyondIt) {
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", 700);
    FakeSamples samples(1);
    for (int sample = 0; sample < 700; ++sample)
        samples.add({1});
    const StatSamples* const collectors[] = {&samples};
    BarCanvas canvas(710, scale());
    EXPECT_EQ(view.drawHistoryGraphWithOffset(canvas.context, 0, collectors), 704);
    EXPECT_EQ(canvas.heightAt(700 - 1 - 602 + 2, 3), 16);
    for (double x = 0; x < 96; ++x)
        EXPECT_EQ(canvas.heightAt(x, 3), 0) << x;
}

TEST_P(VTRMenuExtraContentViewTest, AHistoryLeavesItsTileOutOnlyWhenAPreferenceSaysSo) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    const FakeSamples samples;
    const StatSamples* const collectors[] = {&samples};
    const auto hasTile = [&] {
        BarCanvas canvas(40, scale());
        view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
        return canvas.painted(15, 10);
    };
    EXPECT_TRUE(hasTile());
    config().historyGraphBackground = "Test_ShowBackground";
    EXPECT_FALSE(hasTile()) << "a preference without a value is false";
    VTRSetBoolForKey("Test_ShowBackground", true);
    EXPECT_TRUE(hasTile());
    VTRSetBoolForKey("Test_ShowBackground", false);
    EXPECT_FALSE(hasTile());
}

TEST_P(VTRMenuExtraContentViewTest, WidthsBeyondReckoningAreCut) {
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    for (const std::int64_t width :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        VTRSetIntegerForKey("CPU_MenubarGraphWidth", width);
        BarCanvas canvas(40, scale());
        const std::int64_t answer = view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
        EXPECT_EQ(answer, (width < 0 ? -1 : 1) * (std::int64_t{1} << 40) + 4);
        EXPECT_EQ(view.drawMultipleHistoryGraphWithOffset(canvas.context, 0, collectors), answer);
    }
}

TEST_P(VTRMenuExtraContentViewTest, WithoutGraphsOnlyTheBackgroundIsPainted) {
    config().historyGraphs.clear();
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    BarCanvas canvas(40, scale());
    EXPECT_EQ(view.drawHistoryGraphWithOffset(canvas.context, 0, collectors), 34);
    EXPECT_FALSE(canvas.painted(15, 4));
}

TEST_P(VTRMenuExtraContentViewTest, APartOfTheBandIsOneHighWithoutDataAndTwoWithALittle) {
    FakeSamples samples(1);
    for (int sample = 0; sample < 40; ++sample)
        samples.add({sample < 20 ? 0.01 : 0.0});
    const StatSamples* const collectors[] = {&samples};
    BarCanvas canvas(40, scale());
    EXPECT_EQ(view.drawMultipleHistoryGraphWithOffset(canvas.context, 0, collectors), 34);
    EXPECT_EQ(canvas.heightAt(5, 4), 2);
    EXPECT_EQ(canvas.heightAt(20, 4), 1);
    samples.ring.setEmpty(8, 1);
    config().historyGraphs[0].flip = true;
    BarCanvas hanging(40, scale());
    view.drawMultipleHistoryGraphWithOffset(hanging.context, 0, collectors);
    EXPECT_TRUE(hanging.painted(5, 17));
    EXPECT_FALSE(hanging.painted(5, 16));
    EXPECT_TRUE(hanging.painted(20, 18));
    EXPECT_FALSE(hanging.painted(20, 17));
}

TEST_P(VTRMenuExtraContentViewTest, AFrameReplacesTheHeightOfABand) {
    config().historyGraphs[0].frame = Rect{100, 5, 100, 8};
    FakeSamples samples(1);
    for (int sample = 0; sample < 40; ++sample)
        samples.add({0.5});
    const StatSamples* const collectors[] = {&samples};
    BarCanvas canvas(40, scale());
    view.drawHistoryGraphWithOffset(canvas.context, 0, collectors);
    EXPECT_FALSE(canvas.painted(15, 4));
    EXPECT_EQ(canvas.heightAt(15, 5), 4);
}

// --- Texts, further -----------------------------------------------------------------------------

TEST_P(VTRMenuExtraContentViewTest, APercentageIsRoundedAndShowsWhatIsBeyondAHundred) {
    const auto pixelsFor = [&](std::initializer_list<double> values, bool empty = false) {
        std::vector<FakeSamples> samples;
        for (const double value : values)
            samples.emplace_back(std::initializer_list<double>{value});
        std::vector<const StatSamples*> collectors;
        for (FakeSamples& each : samples) {
            each.ring.setEmpty(0, empty ? 1 : 0);
            collectors.push_back(&each);
        }
        BarCanvas canvas(80, scale());
        view.drawTextAtOffset(canvas.context, 0, collectors, "percentage");
        return test::pixelsOf(canvas.surface);
    };
    EXPECT_EQ(pixelsFor({40, 60}), pixelsFor({50})) << "two cores show their mean";
    EXPECT_EQ(pixelsFor({0.4}), pixelsFor({0}));
    EXPECT_EQ(pixelsFor({99.6}), pixelsFor({100}));
    EXPECT_NE(pixelsFor({250}), pixelsFor({100}));
    EXPECT_EQ(pixelsFor({70}, true), pixelsFor({0})) << "empty collectors add nothing";
    EXPECT_EQ(pixelsFor({}), pixelsFor({0}));
}

TEST_P(VTRMenuExtraContentViewTest, ChangedTextPreferencesShowOnlyAfterAReset) {
    EXPECT_EQ(view.percentageAttributes("percentage").font.size, 13);
    VTRSetIntegerForKey("CPU_MenubarTextSize", 10);
    VTRSetObjectForKey("CPU_MenubarTextColor", "1 0 0 1");
    EXPECT_EQ(view.percentageAttributes("percentage").font.size, 13);
    view.resetTextConfig();
    EXPECT_EQ(view.percentageAttributes("percentage").font.size, 10);
    EXPECT_EQ(view.percentageAttributes("percentage").colour, (Colour{1, 0, 0, 1}));
}

TEST_P(VTRMenuExtraContentViewTest, AResetOfTextsKeepsTheWidthsOfSensors) {
    struct Sensor final : StatSamples, SensorItem {
        statsample sampleAtIndex(std::size_t, StorageType) const noexcept override { return {}; }
        statsample sampleWithIdentifier(double, StorageType) const noexcept override { return {}; }
        double idForInterval(int) const noexcept override { return 0; }
        std::size_t sampleValueCount() const noexcept override { return 0; }
        bool temporary() const noexcept override { return false; }
        std::string_view sensorKey() const noexcept override { return "TC0D"; }
        SensorReading sensorReading() const noexcept override { return {2, rounds}; }
        double rounds = 100000;
    } fan;
    TextItem large = config().textItems["percentage"];
    large.type = static_cast<int>(TextType::large);
    large.formatNumber = 2;
    TextItem small = large;
    small.type = static_cast<int>(TextType::small);
    config().textItems["large"] = large;
    config().textItems["small"] = small;
    const StatSamples* const collectors[] = {&fan};
    BarCanvas canvas(80, scale());
    const auto width = [&](std::string_view key) {
        return view.drawTextAtOffset(canvas.context, 0, collectors, key);
    };
    const std::int64_t wideLarge = width("large"), wideSmall = width("small");
    fan.rounds = 5;
    view.resetTextConfig();
    EXPECT_EQ(width("large"), wideLarge);
    EXPECT_EQ(width("small"), wideSmall);
}

TEST_P(VTRMenuExtraContentViewTest, ColoursThatAreNoneAreBlackOnALightBarAndWhiteOnADarkOne) {
    for (const char* const text : {"red", "1 0 0", "1 0 0 1 1", "1  0 0 1", "1,0,0,1", ""}) {
        VTRSetObjectForKey("CPU_MenubarTextColor", text);
        VTRSetObjectForKey("CPU_MenubarTextColor-Dark", text);
        setDark(false);
        view.resetTextConfig();
        EXPECT_EQ(view.percentageAttributes("percentage").colour, kBlack) << text;
        setDark(true);
        VTRPreferences::sharedPreferences()->resetValueForKey("CPU_MenubarTextColor-Dark");
        view.resetTextConfig();
        EXPECT_EQ(view.percentageAttributes("percentage").colour, kWhite) << text;
    }
}

TEST_P(VTRMenuExtraContentViewTest, ColoursAndOpacitiesThatAreNoNumbersPaintSomethingOrNothing) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    config().verticalGraphs[0].custom = {"CPU_MenubarGraphCustomColors", "CPU_MenubarGraphUser"};
    VTRSetIntegerForKey("CPU_MenubarGraphCustomColors", 1);
    VTRSetIntegerForKey("MenubarTheme", 0);
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    for (const char* const colour :
         {"nan nan nan nan", "nan 0 0 1", "inf -inf 1e999 1", "-4 300 0 7"})
        for (const double opacity : {kNone, -1.0, 400.0, 1 / 0.0}) {
            VTRSetObjectForKey("CPU_MenubarGraphUser", colour);
            VTRSetDoubleForKey("MenubarGraphOpacity", opacity);
            BarCanvas canvas(20, scale());
            EXPECT_EQ(view.drawVerticalGraphWithOffset(canvas.context, 0, collectors), 13);
            canvas.surface.clear();
            canvas.context.fill(Rect{0, 0, 20, 22}, kWhite);
            EXPECT_EQ(canvas.pixel(10, 10), test::kOpaqueWhite) << "later paints come out";
        }
}

}  // namespace
}  // namespace vantor
