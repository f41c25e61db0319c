#include "Shared/Views/VTRMenuExtraView.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Foundation/Image.h"
#include "Platform/Simulated/SimulatedMenuExtraHost.h"
#include "Shared/VTRMenuExtra.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/BarCanvas.h"
#include "Tests/Support/PlainPicture.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Paints a white block of a width that the test gives.
class BlockView final : public VTRMenuExtraContentView {
public:
    explicit BlockView(std::int64_t width) : VTRMenuExtraContentView({}, nullptr), width_(width) {}
    std::int64_t drawAtOffset(Painting::Context& context, std::int64_t offset) override {
        context.fill(Rect{static_cast<double>(offset), 0, static_cast<double>(width_), 22}, kWhite);
        return offset + width_;
    }

private:
    std::int64_t width_;
};

class BlockExtra final : public VTRMenuExtra {
public:
    using VTRMenuExtra::VTRMenuExtra;
    bool isCombinedExtra() const override { return combined; }
    void loadModules() override {
        for (std::size_t index = 0; index < widths.size(); ++index) {
            auto module = std::make_unique<VTRModule>(*this);
            module->setKey(static_cast<int>(index) + 1);
            if (widths[index] >= 0)
                module->setView(std::make_unique<BlockView>(widths[index]));
            mutableModules().push_back(std::move(module));
        }
    }

    std::vector<std::int64_t> widths{30};
    bool combined = false;
};

class VTRMenuExtraViewTest : public testing::Test {
protected:
    VTRMenuExtraView& load() {
        world.machine.run(0);
        world.journal.lengths.clear();
        return *extra.view();
    }
    void paint(VTRMenuExtraView::Destination destination = {}) {
        canvas.surface.clear();
        extra.view()->drawRect(canvas.context, destination);
    }

    test::World world;
    simulated::SimulatedMenuExtraHost host{&world.journal};
    BlockExtra extra{host};
    test::BarCanvas canvas{100};
};

TEST_F(VTRMenuExtraViewTest, ANewWidthGoesThroughZero) {
    load();
    paint();
    EXPECT_THAT(world.journal.lengths, ElementsAre(0, 30));
    EXPECT_EQ(host.viewFrame(), (Rect{0, 0, 30, 22}));
}

TEST_F(VTRMenuExtraViewTest, AnUnchangedWidthIsNotTold) {
    load();
    paint();
    world.journal.lengths.clear();
    paint();
    EXPECT_THAT(world.journal.lengths, IsEmpty());
}

TEST_F(VTRMenuExtraViewTest, WithoutZeroANewWidthIsToldDirectly) {
    load();
    extra.disableZero();
    paint();
    EXPECT_THAT(world.journal.lengths, ElementsAre(30));
}

TEST_F(VTRMenuExtraViewTest, AnItemThatPaintsNothingIsFourWide) {
    extra.widths = {0};
    load();
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 4);
}

TEST_F(VTRMenuExtraViewTest, AModuleWithoutViewBeginsTheItemAnew) {
    extra.widths = {30, -1, 10};
    load();
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 10);
}

TEST_F(VTRMenuExtraViewTest, ModulesStandOneBehindTheOther) {
    extra.widths = {10, 20};
    load();
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 30);
}

TEST_F(VTRMenuExtraViewTest, ACombinedItemWithNoModuleIsTheFallback) {
    extra.combined = true;
    load();
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 20);
}

TEST_F(VTRMenuExtraViewTest, ACombinedItemHasAGapBeforeEveryModuleButTheFirst) {
    extra.combined = true;
    extra.widths = {10, 20};
    load();
    for (const auto& module : *extra.modules())
        module->setMenubar(true);
    VTRSetObjectForKey("CombinedMenubarDisplayMode", "2,7,1");
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 20 + 4 + 10);
    EXPECT_TRUE(canvas.painted(19, 5));
    EXPECT_FALSE(canvas.painted(21, 5));
    EXPECT_TRUE(canvas.painted(24, 5));
}

TEST_F(VTRMenuExtraViewTest, AnOpenMenuIsHighlighted) {
    load();
    host.setMenuDown(true);
    paint();
    EXPECT_EQ(host.backgroundsDrawn(), 1);
    EXPECT_TRUE(extra.view()->isMenuDown());
}

TEST_F(VTRMenuExtraViewTest, ACopyForAnInactiveScreenIsDimmedAndChangesNothing) {
    load();
    host.setMenuDown(true);
    host.setViewFrameSize({30, 22});
    paint({.isBitmap = true, .screens = 2});
    EXPECT_EQ(canvas.pixel(5, 5) >> 24, 0x80U);
    EXPECT_EQ(host.backgroundsDrawn(), 0);
    EXPECT_THAT(world.journal.lengths, IsEmpty());
    EXPECT_EQ(extra.view()->lastSize(), 0);
}

TEST_F(VTRMenuExtraViewTest, WithOneScreenAPictureIsAPaintLikeAnyOther) {
    load();
    paint({.isBitmap = true, .screens = 1});
    EXPECT_EQ(canvas.pixel(5, 5), test::kOpaqueWhite);
    EXPECT_EQ(extra.view()->lastSize(), 30);
}

TEST_F(VTRMenuExtraViewTest, ASnapshotAnswersItsWidthAndTellsNobody) {
    load();
    EXPECT_EQ(extra.view()->drawSnapshot(canvas.context), 30);
    EXPECT_EQ(extra.view()->lastSize(), 0);
    EXPECT_THAT(world.journal.lengths, IsEmpty());
}

TEST_F(VTRMenuExtraViewTest, TheFallbackIconIsWhiteOnADarkBarAndOnEveryOpenMenu) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    extra.combined = true;
    load();
    for (int flags = 0; flags < 8; ++flags) {
        const bool dark = (flags & 1) != 0, contrast = (flags & 2) != 0, open = (flags & 4) != 0;
        world.machine.appearance.setDark(dark);
        world.machine.appearance.setContrast(contrast);
        VTRPreferences::sharedPreferences()->updateMenubarTheme();
        VTRPreferences::sharedPreferences()->updateContrast();
        host.setMenuDown(open);
        paint();
        test::PlainPicture wanted(100, 1);
        wanted.draw(*Image::fromFile(
                        std::filesystem::path(VANTOR_BUNDLE_DIR) /
                        (dark || open ? "menubar-combined-white.png" : "menubar-combined.png")),
                    4, 2, 1);
        EXPECT_EQ(wanted.differenceFrom(canvas.surface), "") << flags;
        EXPECT_EQ(extra.view()->lastSize(), 20);
    }
}

TEST_F(VTRMenuExtraViewTest, AModuleThatIsNotInTheBarIsNotDrawn) {
    extra.combined = true;
    extra.widths = {10, 20};
    load();
    extra.modules()->front()->setMenubar(true);
    VTRSetObjectForKey("CombinedMenubarDisplayMode", "2,1");
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 10);
}

TEST_F(VTRMenuExtraViewTest, ACombinedItemOfModulesThatPaintNothingIsZeroWide) {
    extra.combined = true;
    extra.widths = {0};
    load();
    extra.modules()->front()->setMenubar(true);
    extra.view()->setLastSize(7);
    VTRSetObjectForKey("CombinedMenubarDisplayMode", "1");
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 0);
}

TEST_F(VTRMenuExtraViewTest, AModuleNamedTwiceIsDrawnTwice) {
    extra.combined = true;
    extra.widths = {10};
    load();
    extra.modules()->front()->setMenubar(true);
    VTRSetObjectForKey("CombinedMenubarDisplayMode", "1,1");
    paint();
    EXPECT_EQ(extra.view()->lastSize(), 10 + 4 + 10);
}

TEST_F(VTRMenuExtraViewTest, ASystemWithoutDarkBarsKnowsNoCopiesForInactiveScreens) {
    world.machine.machineIdentity.setSystemVersion({10, 9, 0});
    load();
    paint({.isBitmap = true, .screens = 2});
    EXPECT_EQ(canvas.pixel(5, 5), test::kOpaqueWhite);
    EXPECT_EQ(extra.view()->lastSize(), 30);
}

}  // namespace
}  // namespace vantor
