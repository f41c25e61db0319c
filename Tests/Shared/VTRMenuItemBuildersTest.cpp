#include "Shared/VTRMenuItemBuilders.h"

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Shared/Graphs/BarGraph.h"
#include "Shared/VTRMenuItemButtonBuilders.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/VTRMenuItemControls.h"
#include "Shared/VTRMenuItemGraphBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/ImageView.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using Item = std::shared_ptr<VTRMenuItem>;

void idle(StatInterfaceMenuButton&) {}

/// The frames that a builder gives its row and the controls that the row names.
struct Frames {
    std::string name;
    Item item;
    Rect row;
    std::optional<Rect> label{}, field{}, value2{}, image1{}, image2{}, legend{}, button{}, tick{},
        graph{};
};

template <class Control>
std::optional<Rect> frameOf(const std::shared_ptr<Control>& control) {
    return control ? std::optional(control->frame()) : std::nullopt;
}

void expectFrame(const std::optional<Rect>& is, const std::optional<Rect>& wanted,
                 const std::string& what) {
    ASSERT_EQ(is.has_value(), wanted.has_value()) << what;
    if (!is)
        return;
    EXPECT_EQ(*is, *wanted) << what << " " << is->x << " " << is->y << " " << is->width << " "
                            << is->height;
}

class VTRMenuItemBuildersTest : public testing::Test {
protected:
    test::World world;
};

/// Everything that is made from texts and sizes.
std::vector<Item> rowsOf(const std::string& text, int width, int height) {
    const Rect rect{0, 0, static_cast<double>(width), static_cast<double>(height)};
    return {createSpacerItem(nullptr, "", rect.size()),
            createFillerItem(nullptr, "", rect.size()),
            createMainHeaderItem(nullptr, "", text, width),
            createHeaderItem(nullptr, "", text, width),
            createLabelMenuItem(text, width, height, true),
            createCenteredLabel(text, width, height),
            createTextMenuItem(text, width, height, false),
            createTextMenuItem2(text, true, rect),
            createIconLabelMenuItem(text, width, height, true),
            createRightIconLabelMenuItem(text, width, height, true),
            createDoubleProcessItem(width, height),
            createProcessHeaderItem(width, height),
            createProcessImageHeaderItem(width, height),
            createComboTextMenuItem(text, text, width, height),
            createComboTextMenuItem2(text, text, Container::view, 0, 0, rect),
            createComboTextMenuItemWithLegend(text, text, width, height, 1),
            createComboTextMenuItemWithLegend2(text, text, 9, width, width, rect),
            createMenuItemWithRightStatusDot(text, rect),
            createComboButtonMenuItem(text, text, width, height, true, idle),
            createButtonMenuItem(text, idle, width, height, true),
            createTickButtonMenuItem(text, {}, width, height, false),
            createBarGraphItem(width, height),
            createBarGraphItem2(rect, height),
            createBarGraphItemWithLabel(text, width, height, width),
            createHistoryGraph<CPUGraph>(rect)};
}

void paint(VTRMenuItem& item) {
    StatInterfaceView& view = *item.anyView();
    view.setMenuItemHighlighted(true);
    Painting::ImageSurface surface({400, 40}, 1);
    Painting::Context context = surface.context(Painting::Origin::upperLeft);
    view.display(context);
}

}  // namespace

TEST_F(VTRMenuItemBuildersTest, FramesAreThoseOfTheGrid) {
    const Rect text{0, 0, 225, 15};
    const double label = std::trunc(measuredWidth("Label") + 10);
    const double value = std::trunc(measuredWidth("12345") + 10);
    const double fitting = std::trunc(measuredWidth("Label")) + 20;
    const double button = std::trunc(measuredWidth("Label")) + 40;
    const Frames table[]{
        {"createMenuItem", createMenuItem(), {0, 0, 225, 0}},
        {"createFlippedMenuItem", createFlippedMenuItem(), {0, 0, 225, 0}},
        {"createSpacerItem", createSpacerItem(nullptr, "", {225, 12}), {0, 0, 225, 12}},
        {"createSpacerItem of 0", createSpacerItem(nullptr, "", {0, 0}), {0, 0, 1, 12}},
        {"createFillerItem", createFillerItem(nullptr, "", {225, 7}), {0, 0, 225, 7}},
        {"createFillerItem of 0", createFillerItem(nullptr, "", {0, 0}), {0, 0, 1, 12}},
        {"createMainHeaderItem", createMainHeaderItem(nullptr, "", "CPU", 225), {0, 0, 225, 23}},
        {"createHeaderItem",
         createHeaderItem(nullptr, "", "Cores", 225),
         {0, 0, std::trunc(widthOfText("CORES", vtrMediumFont(10)) + 24), 20}},
        {.name = "createLabelMenuItem",
         .item = createLabelMenuItem("Label", 225, 19, false),
         .row = {0, 0, 225, 19},
         .label = Rect{8, 2, 225, 19}},
        {.name = "createLabelMenuItem, width 0",
         .item = createLabelMenuItem("Label", 0, 15, true),
         .row = {0, 0, fitting, 15},
         .label = Rect{8, 0, fitting, 15}},
        {.name = "createCenteredLabel",
         .item = createCenteredLabel("Label", 225, 22),
         .row = {0, 0, 225, 22},
         .label = Rect{8, 3, 225, 22}},
        {.name = "createTextMenuItem",
         .item = createTextMenuItem("Label", 225, 15, true),
         .row = text,
         .field = Rect{8, 0, 225, 15}},
        {.name = "createTextMenuItem, width 0",
         .item = createTextMenuItem("Label", 0, 15, true),
         .row = {0, 0, fitting, 15},
         .field = Rect{8, 0, fitting, 15}},
        {.name = "createTextMenuItem2",
         .item = createTextMenuItem2("Label", true, {0, 0, 225, 19}),
         .row = {0, 0, 225, 19},
         .field = Rect{8, 2, 205, 19}},
        {.name = "createComboTextMenuItem",
         .item = createComboTextMenuItem("Label", "12345", 225, 15),
         .row = text,
         .label = Rect{8, 0, 225 - 18 - value, 15},
         .field = Rect{225 - 8 - value, 0, value, 15}},
        {.name = "createComboTextMenuItem without value",
         .item = createComboTextMenuItem("Label", "", 225, 15),
         .row = text,
         .label = Rect{8, 0, label, 15},
         .field = Rect{225 - 8 - (225 - 18 - label), 0, 225 - 18 - label, 15}},
        {.name = "createComboTextMenuItem, width 0",
         .item = createComboTextMenuItem("Label", "12345", 0, 19),
         .row = {0, 0, label + value + 36, 19},
         .label = Rect{8, 2, label, 19},
         .field = Rect{label + 28, 2, value, 19}},
        {.name = "createComboTextMenuItem2",
         .item = createComboTextMenuItem2("Label", "12345", Container::view, 70, 0, text),
         .row = text,
         .label = Rect{8, 0, 70, 15},
         .field = Rect{225 - 8 - value, 0, value, 15}},
        {.name = "createComboTextMenuItemWithLegend2",
         .item = createComboTextMenuItemWithLegend2("Label", "12345", 2, 70, 50, text),
         .row = {0, 0, 175, 15},
         .label = Rect{22, 0, 70, 15},
         .field = Rect{117, 0, 50, 15},
         .legend = Rect{10, 3, 9, 10}},
        {.name = "createMenuItemWithRightStatusDot",
         .item = createMenuItemWithRightStatusDot("Label", {0, 0, 225, 19}),
         .row = {0, 0, 225, 19},
         .label = Rect{8, 2, label, 15},
         .field = Rect{label + 23, 2, 225 - label - 48, 15},
         .legend = Rect{206, 3, 9, 10}},
        {.name = "createComboButtonMenuItem",
         .item = createComboButtonMenuItem("Label", "12345", 0, 18, false, idle),
         .row = {0, 0, label + value + 36, 18},
         .label = Rect{8, 1, label, 18},
         .field = Rect{label + 28, 1, value, 18},
         .button = Rect{0, 1, label + value + 36, 18}},
        {.name = "createButtonMenuItem",
         .item = createButtonMenuItem("Label", idle, 0, 19, false),
         .row = {0, 0, button, 19},
         .button = Rect{0, 2, button, 19}},
        {.name = "createTickButtonMenuItem",
         .item = createTickButtonMenuItem("Label", idle, 225, 15, false),
         .row = text,
         .button = Rect{0, 0, 225, 15},
         .tick = Rect{203, 2, 12, 12}},
        {.name = "createIconLabelMenuItem",
         .item = createIconLabelMenuItem("Label", 225, 20, false),
         .row = {0, 0, 225, 20},
         .label = Rect{28, 2, 187, 20},
         .image1 = Rect{10, 2, 16, 16}},
        {.name = "createRightIconLabelMenuItem",
         .item = createRightIconLabelMenuItem("Label", 225, 18, false),
         .row = {0, 0, 225, 18},
         .label = Rect{8, 1, 187, 18},
         .image1 = Rect{201, 2, 14, 14}},
        {.name = "createDoubleProcessItem",
         .item = createDoubleProcessItem(225, 15),
         .row = text,
         .label = Rect{8, 0, 101, 15},
         .field = Rect{117, 0, 50, 15},
         .value2 = Rect{167, 0, 50, 15}},
        {.name = "createProcessHeaderItem",
         .item = createProcessHeaderItem(225, 15),
         .row = text,
         .field = Rect{117, 0, 50, 15},
         .value2 = Rect{167, 0, 50, 15}},
        {.name = "createProcessImageHeaderItem",
         .item = createProcessImageHeaderItem(225, 14),
         .row = {0, 0, 225, 14},
         .image1 = Rect{207, 2, 10, 10},
         .image2 = Rect{187, 2, 10, 10}},
        {.name = "createBarGraphItem",
         .item = createBarGraphItem(225, 20),
         .row = {0, 0, 225, 20},
         .graph = Rect{10, 1, 205, 17}},
        {.name = "createBarGraphItem2",
         .item = createBarGraphItem2({0, 0, 225, 21}, 7),
         .row = {0, 0, 225, 21},
         .graph = Rect{10, 7, 205, 17}},
        {.name = "createBarGraphItemWithLabel",
         .item = createBarGraphItemWithLabel("Label", 225, 20, 100),
         .row = {0, 0, 225, 20},
         .label = Rect{8, 2.5, 95, 20},
         .graph = Rect{115, 1.5, 100, 17}},
        {"createHistoryGraph",
         createHistoryGraph<CPUGraph>(VTRMakeRect(225, 50, 10, 3)),
         {0, 0, 225, 63}},
        {"createLauncherMenuItem", createLauncherMenuItem({1, 2, 3, 8, 4}), {0, 0, 225, 29}},
    };
    for (const Frames& is : table) {
        SCOPED_TRACE(is.name);
        ASSERT_NE(is.item->anyView(), nullptr);
        expectFrame(is.item->anyView()->frame(), is.row, "row");
        expectFrame(frameOf(is.item->label), is.label, "label");
        expectFrame(frameOf(is.item->field), is.field, "field");
        expectFrame(frameOf(is.item->value2), is.value2, "value2");
        expectFrame(frameOf(is.item->image1), is.image1, "image1");
        expectFrame(frameOf(is.item->image2), is.image2, "image2");
        expectFrame(frameOf(is.item->legend), is.legend, "legend");
        expectFrame(frameOf(is.item->button), is.button, "button");
        expectFrame(frameOf(is.item->tick), is.tick, "tick");
        expectFrame(frameOf(is.item->graph), is.graph, "graph");
        EXPECT_EQ(is.item->title(), "");
    }
}

TEST_F(VTRMenuItemBuildersTest, ContainersAreFlippedAndFollowTheMenusWidth) {
    const auto item = createMenuItem();
    EXPECT_EQ(item->view()->className(), "StatInterfaceFlippedView");
    EXPECT_TRUE(item->view()->highlightable());
    EXPECT_EQ(item->view()->resizing(), Resizing::width);
    EXPECT_FALSE(createFlippedMenuItem()->view()->highlightable());
}

TEST_F(VTRMenuItemBuildersTest, AGivenViewIsTheRowsOwn) {
    const auto view = std::make_shared<SpacerView>(Rect{0, 0, 9, 9});
    EXPECT_EQ(createMenuItemWithView(view)->view(), view.get());
}

TEST_F(VTRMenuItemBuildersTest, TextsStandInTheMiddleOfTheirRows) {
    EXPECT_EQ(textY(15), 0);
    EXPECT_EQ(textY(19), 2);
    EXPECT_EQ(textY(20), 2);
    EXPECT_EQ(textY(14), 0) << "rounded towards zero";
    EXPECT_EQ(textY(12), -1);
}

TEST_F(VTRMenuItemBuildersTest, NumbersArePackedAsTheyAre) {
    EXPECT_EQ(VTRMakeRect(225, 50, 10, -3), (Rect{225, 50, 10, -3}));
    EXPECT_EQ(VTRMakeSize(225, 7), (Size{225, 7}));
}

TEST_F(VTRMenuItemBuildersTest, ValuesStandAtTheRightAndLabelsAtTheLeft) {
    const auto item = createComboTextMenuItem("Label", "Value", 225, 15);
    EXPECT_EQ(item->label->alignment(), Painting::Alignment::left);
    EXPECT_EQ(item->field->alignment(), Painting::Alignment::right);
    EXPECT_EQ(createCenteredLabel("x", 225, 15)->label->alignment(), Painting::Alignment::centre);
}

TEST_F(VTRMenuItemBuildersTest, ATextOfItsOwnBeginsWhereALabelDoes) {
    EXPECT_EQ(createTextMenuItem("2.4 GHz", 225, 15, true)->field->alignment(),
              Painting::Alignment::left);
}

TEST_F(VTRMenuItemBuildersTest, ARowThatWidensKeepsValuesAtTheRight) {
    const auto item = createDoubleProcessItem(225, 15);

    item->view()->setFrameSize({325, 15});

    EXPECT_EQ(item->label->frame().x, 8);
    EXPECT_EQ(item->field->frame(), (Rect{217, 0, 50, 15}));
    EXPECT_EQ(item->value2->frame(), (Rect{267, 0, 50, 15}));
}

TEST_F(VTRMenuItemBuildersTest, TheHeadOfAProcessListIsInTheOtherFont) {
    const auto item = createProcessHeaderItem(225, 15);
    EXPECT_EQ(item->label, nullptr);
    for (const auto& field : {item->field, item->value2}) {
        EXPECT_EQ(field->className(), "StatInterfaceTextFieldLabel");
        EXPECT_EQ(field->font(), vtrMediumFont(10));
        EXPECT_EQ(field->alignment(), Painting::Alignment::right);
    }
}

TEST_F(VTRMenuItemBuildersTest, FieldsOfYourOwnWiden) {
    const auto value = createValueField(Painting::Alignment::centre, {1, 2, 3, 4});
    const auto label = createLabelField(Painting::Alignment::right, {1, 2, 3, 4});
    EXPECT_EQ(value->frame(), (Rect{1, 2, 3, 4}));
    EXPECT_EQ(value->alignment(), Painting::Alignment::centre);
    EXPECT_EQ(value->resizing(), Resizing::width);
    EXPECT_EQ(label->alignment(), Painting::Alignment::right);
    EXPECT_EQ(label->font(), vtrNormalFont(12));
}

TEST_F(VTRMenuItemBuildersTest, NoTextIsTooOddForARow) {
    const std::string texts[]{"",
                              std::string(10'000, 'W'),
                              "שלום עולם",
                              "مرحبا",
                              "e\u0301\u0302\u0303\u0304",
                              "👩‍👩‍👧‍👦",
                              "\xFF\xFE",
                              "a\nb\tc",
                              std::string("nul\0nul", 7)};
    for (const std::string& text : texts)
        for (const Item& item : rowsOf(text, 0, 15)) {
            EXPECT_TRUE(std::isfinite(item->anyView()->frame().width));
            paint(*item);
        }
}

TEST_F(VTRMenuItemBuildersTest, NoSizeIsTooOddForARow) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    for (const int size : {0, -1, 1, -225, kLeast, kMost})
        for (const Item& item : rowsOf("Label", size, size))
            paint(*item);
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    for (const Item& item : {createFillerItem(nullptr, "", {kNaN, kNaN}),
                             createTextMenuItem2("x", false, {kNaN, kNaN, kNaN, kNaN}),
                             createBarGraphItem2({0, 0, kNaN, 21}, kNaN),
                             createHistoryGraph<CPUGraph>({kNaN, 50, 10, kNaN})})
        paint(*item);
}

}  // namespace vantor
