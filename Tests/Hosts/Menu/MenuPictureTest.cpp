#include "Hosts/Menu/MenuPicture.h"

#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Tests/Support/MenuWorld.h"

namespace vantor {
namespace {

using test::plainRow;
using testing::ElementsAre;
using testing::IsEmpty;

/// Fills itself, and counts how often.
class InkView final : public StatInterfaceFlippedView {
public:
    using StatInterfaceFlippedView::StatInterfaceFlippedView;
    int paints = 0;

protected:
    void draw(Painting::Context& context) override {
        ++paints;
        context.fill(bounds(), {1, 0, 0, 1});
    }
};

class MenuPictureTest : public testing::Test, public MenuPictureOwner {
protected:
    MenuPictureTest() {
        for (int row = 0; row < 10; ++row)
            menu.addItem(plainRow<InkView>(100, 20));
        picture.emplace(menu, *this);
        picture->layOut(1000);
        parts.clear();
        rowChanges = 0;
    }

    void picturesRowsChanged(MenuPicture&) override { ++rowChanges; }
    void pictureChanged(MenuPicture&, const Rect& part) override { parts.push_back(part); }
    InkView& row(std::size_t index) const {
        return dynamic_cast<InkView&>(*menu.itemArray()[index]->view());
    }
    void paint(std::span<const Rect> which) {
        Painting::Context context = surface.context(Painting::Origin::upperLeft);
        picture->paint(context, which);
    }
    void paint(const Rect& part) { paint(std::array{part}); }

    test::World world;
    VTRMenu menu;
    Painting::ImageSurface surface{{100, 200}, 1};
    std::optional<MenuPicture> picture;
    std::vector<Rect> parts;
    int rowChanges = 0;
};

TEST_F(MenuPictureTest, AViewThatChangedIsAllThatIsToBePainted) {
    const auto view = std::make_shared<View>(Rect{60, 5, 30, 10});
    row(3).addSubview(view);
    parts.clear();
    view->setNeedsDisplay();
    EXPECT_THAT(parts, ElementsAre(Rect{60, 65, 30, 10}));
}

TEST_F(MenuPictureTest, InARowWhoseYGrowsUpwardsTheViewIsWhereItShows) {
    const auto upward = plainRow<StatInterfaceView>(100, 20);
    const auto view = std::make_shared<View>(Rect{60, 0, 30, 5});
    upward->view()->addSubview(view);
    menu.insertItem(upward, 0);
    picture->layOut(1000);
    parts.clear();
    view->setNeedsDisplay();
    EXPECT_THAT(parts, ElementsAre(Rect{60, 15, 30, 5}));
    EXPECT_EQ(picture->viewAt({70, 17}), view.get());
    EXPECT_EQ(picture->viewAt({70, 3}), upward->view());
}

TEST_F(MenuPictureTest, APaintReachesOnlyTheRowsOfItsParts) {
    paint(std::array{Rect{0, 25, 10, 10}, Rect{0, 125, 10, 10}});
    for (std::size_t index = 0; index < 10; ++index)
        EXPECT_EQ(row(index).paints, index == 1 || index == 6 ? 1 : 0) << index;
    EXPECT_EQ(surface.pixel(5, 30), 0xFFFF0000);
    EXPECT_EQ(surface.pixel(5, 40), 0u);
}

TEST_F(MenuPictureTest, AMenuHigherThanItsRoomShowsItsFirstRowsAndAnArrow) {
    EXPECT_EQ(picture->layOut(100), (Size{100, 100}));
    paint({0, 0, 100, 100});
    EXPECT_EQ(surface.pixel(5, 5), 0xFFFF0000);
    EXPECT_NE(surface.pixel(5, 95), 0xFFFF0000);
    EXPECT_EQ(row(9).paints, 0);
    EXPECT_EQ(picture->arrowAt({50, 5}), MenuPicture::Arrow::none);
    EXPECT_EQ(picture->arrowAt({50, 95}), MenuPicture::Arrow::down);
    EXPECT_EQ(picture->rowAt({50, 95}), nullptr);
}

TEST_F(MenuPictureTest, AScrolledMenuHasItsRowsWhereTheyShow) {
    picture->layOut(100);
    picture->scrollBy(50);
    EXPECT_THAT(parts, ElementsAre(Rect{0, 0, 100, 100}));
    EXPECT_EQ(picture->rowAt({50, 40})->item, menu.itemArray()[4]);
    EXPECT_EQ(picture->frameOf(*picture->rowAt({50, 40})), (Rect{0, 30, 100, 20}));
    EXPECT_EQ(picture->arrowAt({50, 5}), MenuPicture::Arrow::up);
}

TEST_F(MenuPictureTest, WhatIsScrolledOutOfSightIsNotToBePainted) {
    picture->layOut(100);
    parts.clear();
    row(8).setNeedsDisplay();
    EXPECT_THAT(parts, IsEmpty());
}

TEST_F(MenuPictureTest, OtherRowsAndOtherSizesAskForANewLayout) {
    menu.removeItemAtIndex(0);
    EXPECT_EQ(rowChanges, 1);
    picture->layOut(1000);
    row(0).setFrameSize({100, 50});
    EXPECT_GT(rowChanges, 1);
    EXPECT_EQ(picture->layOut(1000).height, 210);
}

TEST_F(MenuPictureTest, ALayoutAsksForNoFurtherOne) {
    menu.addItem(plainRow(300, 20));
    rowChanges = 0;
    picture->layOut(1000);
    EXPECT_EQ(rowChanges, 0);
}

TEST_F(MenuPictureTest, AnEmptyMenuHasAWindowAllTheSame) {
    menu.removeAllItems();
    EXPECT_EQ(picture->layOut(1000), (Size{1, 1}));
}

TEST_F(MenuPictureTest, AMenuThatHasEndedShowsItsGroundAlone) {
    auto gone = std::make_unique<VTRMenu>();
    const auto row = plainRow<InkView>(100, 20);
    gone->addItem(row);
    MenuPicture of(*gone, *this);
    of.layOut(1000);
    gone.reset();
    Painting::Context context = surface.context(Painting::Origin::upperLeft);
    of.paint(context, std::array{Rect{0, 0, 100, 20}});
    EXPECT_EQ(dynamic_cast<InkView&>(*row->view()).paints, 0);
    EXPECT_EQ(surface.pixel(5, 5), 0xFFFAFAFA);
}

}  // namespace
}  // namespace vantor
