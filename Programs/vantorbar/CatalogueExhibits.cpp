#include "Programs/vantorbar/CatalogueExhibits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "Shared/Buttons/StatInterfaceButton.h"
#include "Shared/Graphs/BarGraph.h"
#include "Shared/VTRImageCache.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemButtonBuilders.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/VTRMenuItemControls.h"
#include "Shared/VTRMenuItemGraphBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/Views/ImageView.h"
#include "Shared/Views/StatInterfaceActionView.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"

namespace vantor {
namespace {

using Items = std::vector<Exhibit>;
using Item = std::shared_ptr<VTRMenuItem>;

constexpr int kWidth = 225;
constexpr Rect kTextRow{0, 0, kWidth, 15};
constexpr std::size_t kValues = 3;
/// What of a new figure goes into the means of one, five and fifteen minutes.
constexpr std::array kLoadWeights{0.4, 0.09, 0.03};
constexpr std::size_t kGapBegin = 210, kGapEnd = 224;  // positions in the ring

void idle(StatInterfaceMenuButton&) {}

Item withField(Item item, std::string_view text, std::string_view second = {}) {
    if (item->field)
        item->field->setStringValue(text);
    if (item->value2)
        item->value2->setStringValue(second);
    return item;
}

Item withLabel(Item item, std::string_view text) {
    if (item->label)
        item->label->setStringValue(text);
    return item;
}

Item withImages(Item item, std::string_view first, std::string_view second = {}) {
    if (item->image1)
        item->image1->setImage(VTRImageNamed(first));
    if (item->image2)
        item->image2->setImage(VTRImageNamed(second));
    return item;
}

Item withBar(Item item, float share) {
    item->graph->setPercentage(share);
    return item;
}

Item ticked(Item item) {
    item->tick->setState(1);
    return item;
}

Item high(Item item, double height) {
    item->view()->setFrameSize({item->view()->frame().width, height});
    return item;
}

Items headers() {
    const auto blue = std::make_shared<HeaderView>(Rect{0, 0, kWidth, 20});
    blue->setType(2);
    blue->setTitle("On blue");
    return {{"createMainHeaderItem", createMainHeaderItem(nullptr, "", "Cpu", kWidth)},
            {"createHeaderItem", createHeaderItem(nullptr, "", "Load average", kWidth)},
            {"HeaderView, type 2", createMenuItemWithView(blue)},
            {"createSpacerItem", createSpacerItem(nullptr, "", VTRMakeSize(kWidth, 12))},
            {"createFillerItem", createFillerItem(nullptr, "", VTRMakeSize(kWidth, 12))},
            {"createMenuItem", high(createMenuItem(), 12)},
            {"createFlippedMenuItem", high(createFlippedMenuItem(), 12)}};
}

Items texts() {
    return {
        {"createLabelMenuItem", createLabelMenuItem("12 days, 4 hours", kWidth, 19, false)},
        {"createCenteredLabel", createCenteredLabel("No processes", kWidth, 19)},
        {"createTextMenuItem", createTextMenuItem("2.4 GHz", kWidth, 15, true)},
        {"createTextMenuItem2", createTextMenuItem2("2.4 GHz", false, kTextRow)},
        {"createIconLabelMenuItem",
         withImages(createIconLabelMenuItem("Terminal", kWidth, 20, false), "stats-launcher-3")},
        {"createRightIconLabelMenuItem",
         withImages(createRightIconLabelMenuItem("Disk", kWidth, 18, false), "stats-launcher-5")},
        {"createDoubleProcessItem",
         withLabel(withField(createDoubleProcessItem(kWidth, 15), "1.2 MB", "340 KB"),
                   "a process whose name is long")},
        {"createProcessHeaderItem",
         withField(createProcessHeaderItem(kWidth, 15), "READ", "WRITE")},
        {"createProcessImageHeaderItem", withImages(createProcessImageHeaderItem(kWidth, 14),
                                                    "stats-label-blue", "stats-label-red")},
    };
}

Items combos() {
    return {
        {"createComboTextMenuItem",
         withLabel(createComboTextMenuItem("Process", "8888.8%", kWidth, 15),
                   "a process whose name is long")},
        {"createComboTextMenuItem, width 0",
         createComboTextMenuItem("Frames Per Second", "12345", 0, 19)},
        {"createComboTextMenuItem2",
         createComboTextMenuItem2("Threads", "1732", Container::view, 0, 60, kTextRow)},
        {"createComboTextMenuItemWithLegend",
         withField(createComboTextMenuItemWithLegend("User", "100%", 0, 15, 1), "42%")},
        {"createComboTextMenuItemWithLegend2",
         createComboTextMenuItemWithLegend2("System", "7%", 2, 90, 60, kTextRow)},
        {"createMenuItemWithRightStatusDot",
         withField(createMenuItemWithRightStatusDot("Daemon", kTextRow), "connected")},
    };
}

Items buttons() {
    const auto action = std::make_shared<StatInterfaceActionView>(Rect{0, 0, kWidth, 19});
    action->setTitle("StatInterfaceActionView");
    action->setAction([] {});
    action->setHighlightable(true);
    action->setBold(true);
    const auto inactive = std::make_shared<StatInterfaceActionView>(Rect{0, 0, kWidth, 19});
    inactive->setTitle("StatInterfaceActionView, no action");
    return {
        {"createComboButtonMenuItem",
         createComboButtonMenuItem("Address", "192.168.1.7", kWidth, 15, false, idle)},
        {"createButtonMenuItem", createButtonMenuItem("Open Folder", idle, kWidth, 15, false)},
        {"createTickButtonMenuItem",
         ticked(createTickButtonMenuItem("Show all", idle, kWidth, 16, false))},
        {"StatInterfaceActionView", createMenuItemWithView(action)},
        {"StatInterfaceActionView", createMenuItemWithView(inactive)},
        {"createLauncherMenuItem", createLauncherMenuItem({1, 2, 3, 8, 4})},
        {"createLauncherMenuItem", createLauncherMenuItem({5, 6, 7, 9, 1})},
    };
}

Items bars() {
    Items items{
        {"createBarGraphItem", withBar(createBarGraphItem(kWidth, 21), 0.62F)},
        {"createBarGraphItem2", withBar(createBarGraphItem2({0, 0, kWidth, 21}, 2), 0.001F)},
        {"createBarGraphItemWithLabel",
         withBar(createBarGraphItemWithLabel("Memory", kWidth, 21, 100), 1)}};
    for (const float share : {0.0F, 0.25F})
        items.push_back({fmt::format("BarGraph at {}%", share * 100),
                         withBar(createBarGraphItem(kWidth, 21), share)});
    return items;
}

Items graphs(const StatSamples& shares, const StatSamples& loads) {
    return {
        {"createHistoryGraph, CPUGraph",
         [&] {
             auto item = createHistoryGraph<CPUGraph>(VTRMakeRect(kWidth, 50, 10, 3));
             item->historyGraph->setCollector(&shares);
             return item;
         }()},
        {"createHistoryGraph, LoadAverageGraph",
         [&] {
             auto item = createHistoryGraph<LoadAverageGraph>(VTRMakeRect(kWidth, 50, 10, 6));
             item->historyGraph->setCollector(&loads);
             return item;
         }()},
        {"createGraphs", createGraphs<CPUGraph>({&shares, &shares}, VTRMakeRect(205, 50, 9, 0))},
        {"createHistoryGraphs", createHistoryGraphs<CPUGraph>(3, 1, &shares)},
        {"createHistoryGraphs", createHistoryGraphs<LoadAverageGraph>(1, 1, &loads)},
    };
}

/// Eight of them side by side.
Item dots() {
    auto item = createRow({kWidth, 15});
    for (std::int64_t tag = 1; tag <= 8; ++tag) {
        const auto dot =
            addControl<DotImageView>(*item, {10 + 20 * static_cast<double>(tag - 1), 3, 9, 10});
        dot->setTag(tag);
        dot->updateImage();
    }
    return item;
}

Item glossyDots() {
    auto item = createRow({kWidth, 15});
    double x = 8;
    for (const Colour& colour : {Colour{0.2, 0.7, 1, 1}, Colour{1, 0.3, 0.25, 1},
                                 Colour{0.4, 0.8, 0.3, 1}, Colour{0.6, 0.6, 0.6, 1}}) {
        addControl<DotView>(*item, {x, 2, 11, 11})->setColor(colour);
        x += 20;
    }
    return item;
}

Item ticks() {
    auto item = createRow({kWidth, 16});
    for (const bool highlighted : {false, true}) {
        const auto tick = addControl<TickView>(*item, {highlighted ? 28.0 : 8.0, 2, 12, 12});
        tick->setState(1);
        tick->setHighlighted(highlighted);
    }
    return item;
}

template <class Field>
Item field(std::string_view text, const FieldStyle& style) {
    auto item = createRow({kWidth, 15});
    item->field = addField<Field>(*item, {kTextInset, 0, kWidth - 16, 15}, text, style);
    return item;
}

Items controls() {
    return {
        {"DotImageView, 1 to 8", dots()},
        {"DotView", glossyDots()},
        {"TickView", ticks()},
        {"StatInterfaceTextFieldLabel", field<StatInterfaceTextFieldLabel>("Label 0123", {})},
        {"StatInterfaceTextFieldLabel, alternate",
         field<StatInterfaceTextFieldLabel>("Label 0123", {.alternateFont = true})},
        {"StatInterfaceTextFieldValue", field<StatInterfaceTextFieldValue>("1234.5%", {})},
        {"StatInterfaceTextFieldValue, not bold",
         field<StatInterfaceTextFieldValue>("1234.5%", {.bold = false})},
        {"StatInterfaceTextFieldHeader", field<StatInterfaceTextFieldHeader>("Header", {})},
    };
}

/// Between 0 and 1: waves of three lengths.
double activity(double age, double phase) noexcept {
    const auto wave = [&](double length) {
        return 0.5 + 0.5 * std::sin((age / length + phase) * 2 * std::numbers::pi);
    };
    return 0.5 * wave(190) * wave(47) + 0.3 * wave(23) * wave(7.3) + 0.2 * wave(3.1);
}

}  // namespace

CatalogueSamples::CatalogueSamples(Kind kind) : ring_(kValues) {
    std::array<double, kValues> loads{1.2, 1.2, 1.2};
    for (std::size_t left = SampleRing::kSlots; left > 0; --left) {
        const std::size_t position = left - 1;
        const auto age = static_cast<double>(position);
        ring_.pushSamples();
        ring_.setSampleID(0, static_cast<double>(SampleRing::kSlots - position));
        ring_.setEmpty(0, position >= kGapBegin && position < kGapEnd ? 1 : 0);
        for (std::size_t mean = 0; mean < kValues; ++mean)
            loads[mean] += (7 * activity(age, 0) - loads[mean]) * kLoadWeights[mean];
        const std::array shares{4 + 70 * activity(age, 0), 3 + 24 * activity(age, 0.3), 0.0};
        std::ranges::copy(kind == Kind::shares ? shares : loads, ring_.mutableValues(0).begin());
    }
}

statsample CatalogueSamples::sampleAtIndex(std::size_t index, StorageType) const noexcept {
    return ring_.sampleAtIndex(index);
}

statsample CatalogueSamples::sampleWithIdentifier(double sampleID, StorageType) const noexcept {
    if (const auto position = ring_.positionOfIdentifier(sampleID))
        return ring_.sampleAtIndex(*position);
    return {.sampleID = sampleID, .empty = 1, .values = {}};
}

double CatalogueSamples::idForInterval(int) const noexcept { return ring_.sampleID(0); }

std::vector<ExhibitFamily> catalogueExhibits(const StatSamples& shares, const StatSamples& loads) {
    return {{"Headers and gaps", headers()},   {"Texts", texts()},
            {"Labels and values", combos()},   {"Buttons", buttons()},
            {"Controls", controls()},          {"Bars", bars()},
            {"History", graphs(shares, loads)}};
}

}  // namespace vantor
