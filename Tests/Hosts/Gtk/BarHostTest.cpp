#include "Hosts/Gtk/BarHost.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/ScriptedMenuWindows.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr BarID kLeft{1}, kRight{2};

/// Bars that a test makes, and that note what they are asked to paint.
class ScriptedToolkit final : public BarToolkit {
public:
    struct Repaint {
        BarID bar;
        Rect part;
    };

    void change(std::vector<BarPlace> places) {
        places_ = std::move(places);
        if (owner_ != nullptr)
            owner_->barsChanged();
    }
    void press(BarID bar) { owner_->itemPressed(bar); }

    bool open(DisplaySystem) noexcept override { return true; }
    bool isLost() const noexcept override { return false; }
    bool show(const BarOptions&, BarOwner& owner) override {
        owner_ = &owner;
        return !places_.empty();
    }
    void hide() noexcept override { owner_ = nullptr; }
    void listBars(std::vector<BarPlace>& into) const override { into = places_; }
    void setItemLength(double length) noexcept override { itemLength = length; }
    void repaintItem(BarID bar, const Rect& part) noexcept override {
        repaints.push_back({bar, part});
    }
    void repaintBars() noexcept override { ++barRepaints; }
    MenuWindows& menusAt(BarID bar) noexcept override {
        menuBar = bar;
        return menus;
    }
    BarWait serve() override { return {}; }

    test::ScriptedMenuWindows menus;
    BarID menuBar = BarID::none;

    std::vector<Repaint> repaints;
    double itemLength = 0;
    int barRepaints = 0;

private:
    std::vector<BarPlace> places_{{kLeft, 1}};
    BarOwner* owner_ = nullptr;
};

class BarHostTest : public testing::Test {
protected:
    BarHostTest() {
        toolkit.repaints.reserve(64);
        world.machine.directories.setResources(
            std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
        host.setExtra(&extra);
        world.machine.run(0.5);
        show();
        toolkit.repaints.clear();
    }
    ~BarHostTest() override { host.setExtra(nullptr); }

    void show() {
        for (int paint = 0; host.needsDisplay() && paint < 4; ++paint)
            host.displayIfNeeded();
    }
    void update() {
        extra.update();
        show();
    }
    void measure(std::uint32_t user) {
        world.machine.processorCounters.spend(0, {.user = user, .idle = 100 - user});
        CPUStatCollector::sharedCPUCollector().updateStats();
    }
    std::vector<BarID> repainted() const {
        std::vector<BarID> bars;
        for (const auto& repaint : toolkit.repaints)
            bars.push_back(repaint.bar);
        return bars;
    }

    test::World world;
    ScriptedToolkit toolkit;
    BarHost host{toolkit, {}};
    VantorBarCPU extra{host};
};

TEST_F(BarHostTest, NoBarsAtItsStartIsAMistake) {
    ScriptedToolkit none;
    none.change({});
    EXPECT_THROW(BarHost(none, {}), std::runtime_error);
}

TEST_F(BarHostTest, TheBarsLearnTheLengthThatTheItemPaints) {
    EXPECT_EQ(toolkit.itemLength, host.length());
    EXPECT_NE(host.length(), 20);
    EXPECT_FALSE(host.needsDisplay());
}

TEST_F(BarHostTest, AnUpdateThatPaintsTheSameRepaintsNothing) {
    update();
    EXPECT_THAT(toolkit.repaints, IsEmpty());
    EXPECT_EQ(toolkit.barRepaints, 0);
}

TEST_F(BarHostTest, AnUpdateRepaintsOnlyWhatChanged) {
    measure(50);
    show();
    ASSERT_THAT(toolkit.repaints, SizeIs(1));
    const Rect part = toolkit.repaints[0].part;
    EXPECT_GT(part.width, 0);
    EXPECT_LT(part.width, host.length());
    EXPECT_LT(part.height, kBarHeight);
}

TEST_F(BarHostTest, ASampleIsShownWithoutAllocation) {
    measure(50);
    show();
    measure(20);
    const test::AllocationCounter allocations;
    show();
    EXPECT_EQ(allocations.count(), 0u);
    EXPECT_THAT(toolkit.repaints, testing::Not(IsEmpty()));
}

TEST_F(BarHostTest, AllBarsOfAllScalesShowWhatChanged) {
    toolkit.change({{kLeft, 1}, {kRight, 2}});
    show();
    toolkit.repaints.clear();
    measure(50);
    show();
    EXPECT_THAT(repainted(), ElementsAre(kLeft, kRight));
    // Points, of either scale; the picture of more pixels may change a little more.
    EXPECT_NEAR(toolkit.repaints[0].part.width, toolkit.repaints[1].part.width, 2);
}

TEST_F(BarHostTest, ABarThatComesShowsAllOfTheItemAndTheOthersNothingNew) {
    toolkit.change({{kLeft, 1}, {kRight, 1}});
    EXPECT_TRUE(host.needsDisplay());
    show();
    ASSERT_THAT(repainted(), ElementsAre(kRight));
    EXPECT_EQ(toolkit.repaints[0].part, (Rect{0, 0, host.length(), kBarHeight}));
}

TEST_F(BarHostTest, AnotherScaleShowsAllOfTheItem) {
    toolkit.change({{kLeft, 2}});
    show();
    EXPECT_THAT(repainted(), ElementsAre(kLeft));
}

TEST_F(BarHostTest, OnlyTheBarThatWasPressedHasTheMenu) {
    toolkit.change({{kLeft, 1}, {kRight, 1}});
    show();
    toolkit.repaints.clear();
    toolkit.press(kRight);
    EXPECT_TRUE(host.isMenuDown());
    show();
    EXPECT_THAT(repainted(), ElementsAre(kRight));
    EXPECT_TRUE(extra.view()->isMenuDown());
}

TEST_F(BarHostTest, APressInAnotherBarTakesTheMenuThere) {
    toolkit.change({{kLeft, 1}, {kRight, 1}});
    toolkit.press(kRight);
    show();
    toolkit.repaints.clear();
    toolkit.press(kLeft);
    EXPECT_TRUE(host.isMenuDown());
    show();
    EXPECT_THAT(repainted(), ElementsAre(kLeft, kRight));
}

TEST_F(BarHostTest, ASecondPressClosesTheMenu) {
    toolkit.press(kLeft);
    show();
    toolkit.press(kLeft);
    show();
    EXPECT_FALSE(host.isMenuDown());
    EXPECT_FALSE(extra.view()->isMenuDown());
    EXPECT_FALSE(extra.menu()->visible());
    EXPECT_THAT(toolkit.menus.windows, IsEmpty());
}

TEST_F(BarHostTest, APressShowsTheMenuAtItsBar) {
    toolkit.change({{kLeft, 1}, {kRight, 1}});
    toolkit.press(kRight);
    EXPECT_THAT(toolkit.menus.windows, SizeIs(1));
    EXPECT_EQ(toolkit.menuBar, kRight);
    EXPECT_TRUE(extra.menu()->visible());
}

TEST_F(BarHostTest, TheItemIsNotHighlightedAnyMoreWhenTheUserPressesElsewhere) {
    toolkit.press(kLeft);
    show();
    toolkit.menus.dismiss();
    EXPECT_FALSE(host.isMenuDown());
    EXPECT_TRUE(host.needsDisplay());
    EXPECT_FALSE(extra.menu()->visible());
}

TEST_F(BarHostTest, WithoutAWindowForItTheMenuIsNotOpen) {
    toolkit.menus.refuses = true;
    toolkit.press(kLeft);
    EXPECT_FALSE(host.isMenuDown());
    EXPECT_FALSE(extra.menu()->visible());
}

TEST_F(BarHostTest, AnExtraThatEndsTakesItsOpenMenuAlong) {
    toolkit.press(kLeft);
    extra.willUnload();
    EXPECT_FALSE(host.isMenuDown());
    EXPECT_THAT(toolkit.menus.windows, IsEmpty());
}

TEST_F(BarHostTest, TheMenuClosesWithItsBar) {
    toolkit.change({{kLeft, 1}, {kRight, 1}});
    toolkit.press(kRight);
    toolkit.change({{kLeft, 1}});
    EXPECT_FALSE(host.isMenuDown());
}

TEST_F(BarHostTest, WithoutBarsNothingIsPainted) {
    toolkit.change({});
    measure(50);
    show();
    EXPECT_THAT(toolkit.repaints, IsEmpty());
    EXPECT_FALSE(host.needsDisplay());
}

TEST_F(BarHostTest, ADarkDesktopRepaintsTheBars) {
    world.machine.appearance.setDark(true);
    VTRPreferences::sharedPreferences()->updateMenubarTheme();
    update();
    EXPECT_EQ(toolkit.barRepaints, 1);
}

TEST_F(BarHostTest, AnItemThatLeavesTakesItsLengthAlong) {
    host.setLength(0);
    show();
    EXPECT_EQ(toolkit.itemLength, 0);
}

}  // namespace
}  // namespace vantor
