#include "Shared/Views/View.h"

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"

namespace vantor {
namespace {

class FlippedView final : public View {
public:
    using View::View;
    bool isFlipped() const override { return true; }
};

class PaintedView final : public View {
public:
    PaintedView(const Rect& frame, const Colour& colour) : View(frame), colour_(colour) {}

private:
    void draw(Painting::Context& context) override { context.fill(bounds(), colour_); }

    Colour colour_;
};

class RecordingWindow final : public ViewWindow {
public:
    void setNeedsDisplay(View& root, View& view) override {
        lastRoot = &root;
        lastView = &view;
    }

    View* lastRoot = nullptr;
    View* lastView = nullptr;
};

struct Case {
    Resizing resizing;
    Rect before, after;
};

constexpr Colour kInk{1, 0, 0, 1};

}  // namespace

TEST(ViewTest, WhatGivesWayTakesTheDifference) {
    const Case cases[] = {
        {Resizing::none, {8, 0, 40, 15}, {8, 0, 40, 15}},
        {Resizing::width, {8, 0, 40, 15}, {8, 0, 140, 15}},
        {Resizing::leftMargin, {50, 0, 40, 15}, {150, 0, 40, 15}},
        {Resizing::rightMargin, {50, 0, 40, 15}, {50, 0, 40, 15}},
        {Resizing::leftMargin | Resizing::rightMargin, {20, 0, 20, 15}, {45, 0, 20, 15}},
    };
    for (const Case& one : cases) {
        View around({0, 0, 100, 20});
        const auto view = std::make_shared<View>(one.before);
        view->setResizing(one.resizing);
        around.addSubview(view);

        around.setFrameSize({200, 20});

        EXPECT_EQ(view->frame(), one.after) << static_cast<int>(one.resizing);
    }
}

TEST(ViewTest, TheBottomMarginLiesBehindInAFlippedView) {
    FlippedView around({0, 0, 10, 20});
    const auto view = std::make_shared<View>(Rect{0, 5, 10, 10});
    view->setResizing(Resizing::bottomMargin);
    around.addSubview(view);

    around.setFrameSize({10, 40});

    EXPECT_EQ(view->frame(), (Rect{0, 5, 10, 10}));
}

TEST(ViewTest, AnAddedViewLeavesItsFormerPlace) {
    View first({0, 0, 10, 10}), second({0, 0, 10, 10});
    const auto view = std::make_shared<View>();
    first.addSubview(view);

    second.addSubview(view);

    EXPECT_TRUE(first.subviews().empty());
    EXPECT_EQ(view->superview(), &second);
}

TEST(ViewTest, AViewInAFlippedOneIsPaintedFromTheTop) {
    FlippedView around({0, 0, 4, 4});
    around.addSubview(std::make_shared<PaintedView>(Rect{0, 0, 4, 1}, kInk));
    Painting::ImageSurface surface({4, 4}, 1);
    Painting::Context context = surface.context(Painting::Origin::upperLeft);

    around.display(context);

    EXPECT_EQ(surface.pixel(0, 0), 0xFFFF0000u);
    EXPECT_EQ(surface.pixel(0, 1), 0u);
}

TEST(ViewTest, AHiddenViewPaintsNothing) {
    PaintedView view({0, 0, 2, 2}, kInk);
    view.setHidden(true);
    Painting::ImageSurface surface({2, 2}, 1);
    Painting::Context context = surface.context();

    view.display(context);

    EXPECT_EQ(surface.pixel(0, 0), 0u);
}

TEST(ViewTest, TheWindowHearsWhichViewWantsToBePainted) {
    RecordingWindow window;
    View root({0, 0, 10, 10});
    const auto view = std::make_shared<View>(Rect{0, 0, 5, 5});
    root.addSubview(view);
    root.setWindow(&window);

    view->setNeedsDisplay();

    EXPECT_EQ(window.lastRoot, &root);
    EXPECT_EQ(window.lastView, view.get());
}

TEST(ViewTest, APaintSettlesWhatWasAskedFor) {
    View root({0, 0, 10, 10});
    root.addSubview(std::make_shared<View>(Rect{0, 0, 5, 5}));
    Painting::ImageSurface surface({10, 10}, 1);
    Painting::Context context = surface.context();

    root.display(context);

    EXPECT_FALSE(root.treeNeedsDisplay());
}

TEST(ViewTest, ThePointerHitsTheInnermostView) {
    FlippedView root({0, 0, 100, 30});
    const auto row = std::make_shared<View>(Rect{0, 10, 100, 20});
    const auto field = std::make_shared<View>(Rect{10, 15, 10, 5});  // at the row's upper edge
    row->addSubview(field);
    root.addSubview(row);

    EXPECT_EQ(root.hitTest({12, 11}), field.get());
    EXPECT_EQ(root.hitTest({12, 20}), row.get());
    EXPECT_EQ(root.hitTest({100, 20}), nullptr);
}

TEST(ViewTest, APointIsToldInTheCoordinatesOfTheTop) {
    FlippedView root({0, 0, 100, 30});
    const auto row = std::make_shared<View>(Rect{5, 10, 90, 20});
    root.addSubview(row);

    EXPECT_EQ(row->convertToRoot({1, 2}), (Point{6, 28}));
}

TEST(ViewTest, ATreeWithoutAreaIsQuiet) {
    View view({0, 0, -5, 0});
    view.addSubview(std::make_shared<PaintedView>(Rect{0, 0, 5, 5}, kInk));
    Painting::ImageSurface surface({5, 5}, 1);
    Painting::Context context = surface.context();

    view.display(context);

    EXPECT_EQ(surface.pixel(2, 2), 0u);
}

}  // namespace vantor
