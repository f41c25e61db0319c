#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"

#include "Platform/MainQueue.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRDaemonConnection.h"
#include "Shared/VTRMenuHighlight.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemButtonBuilders.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/VTRMenuItemGraphBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/VTRTranslations.h"
#include "Shared/Views/ImageView.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Targets/VantorBarCPU/Interface/TimeTexts.h"

// How the dropdown is built, and what opening it does.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kWidth = 225, kTextHeight = 15, kTallTextHeight = 19;
constexpr int kProcessCount = 5;
constexpr std::int64_t kProcessesKey = 1;
constexpr double kLongUptimeSeconds = 86'443'200;  // its text is as long as they get
constexpr std::size_t kCoresIndex = 3;
constexpr int kHistoryScales = 3;

std::string text(std::string_view key) { return VTRLocalizedString(key, {}, "cpu"); }

Rect graphRect(int width, int height, int top, int bottom) {
    return VTRMakeRect(width, height, top, bottom);
}

template <class Graph>
std::shared_ptr<VTRMenuItem> graphRow(const Rect& rect, const StatSamples& collector) {
    auto item = createHistoryGraph<Graph>(rect);
    item->historyGraph->setStorageMode(0);
    item->historyGraph->setCollector(&collector);
    return item;
}

template <class Cores>
std::vector<const StatSamples*> samplesOf(const Cores& cores) {
    std::vector<const StatSamples*> samples;
    for (const auto& core : cores)
        samples.push_back(core.get());
    return samples;
}

}  // namespace

StatInterfaceCPU::StatInterfaceCPU() {
    setMenu(createMenu());
    menu()->setDelegate(this);
    for (auto* const submenu : {&coresMenu_, &loadMenu_, &historyMenu_, &uptimeMenu_}) {
        *submenu = createMenu();
        (*submenu)->setDelegate(this);
    }
    for (VTRMenu* const submenu : {loadMenu_.get(), historyMenu_.get(), coresMenu_.get()})
        submenu->addItem(createFillerItem(submenu, "filler-top", VTRMakeSize(kWidth, 3)));
    loadInterface();
    setCombinedItem(
        graphRow<CPUGraph>(graphRect(kWidth, 50, 10, 5), CPUStatCollector::sharedCPUCollector()));
}

/// A host that still shows them has menus live a little longer; they have nobody to tell then.
StatInterfaceCPU::~StatInterfaceCPU() {
    for (VTRMenu* const each : {menu(), coresMenu_.get(), loadMenu_.get(), historyMenu_.get(),
                                uptimeMenu_.get()})
        each->setDelegate(nullptr);
}

void StatInterfaceCPU::loadInterface() {
    fpsItem_ = createComboTextMenuItem(text("Frames Per Second"), "12345", 0, kTallTextHeight);
    loadUptimeRows();
    loadLoadRow();
    loadCoreMenu();
    loadUptimeMenu();
    loadHistoryMenu();
    loadGPUMenu();
    loadGraphRows();
    buttonsMenuItem_ = createLauncherMenuItem({1, 2, 3, 8, 4});
    for (int process = 0; process < kProcessCount; ++process)
        processes_.emplace_back();
    rebuildMenu();
}

void StatInterfaceCPU::loadUptimeRows() {
    uptimeItem_ =
        createLabelMenuItem(formattedTime(kLongUptimeSeconds), kWidth, kTallTextHeight, false);
    uptimeItem_->view()->setHighlightable(true);
    uptimeItem_->setSubmenu(uptimeMenu_);
    const auto row = [](std::string_view label) {
        return createComboTextMenuItem(text(label), "", kWidth, kTextHeight);
    };
    bootTimeItem_ = row("Running since");
    awakeItem_ = row("Time Awake");
    sleepingItem_ = row("Time Sleeping");
    VTRMenu& rows = *uptimeMenu_;
    rows.addItem(createFillerItem(&rows, "filler-top", VTRMakeSize(kWidth, 7)));
    rows.addItem(bootTimeItem_);
    rows.addItem(awakeItem_);
    rows.addItem(sleepingItem_);
    rows.addItem(createFillerItem(&rows, "filler-bottom", VTRMakeSize(kWidth, 7)));
}

void StatInterfaceCPU::loadLoadRow() {
    loadAverageContainerItem_ = createMenuItem();
    loadAverageContainerItem_->setSubmenu(loadMenu_);
    loadAverageGraphItem_ = graphRow<LoadAverageGraph>(graphRect(kWidth, 50, 10, 6),
                                                       LoadStatCollector::sharedLoadCollector());
    loadAverageContainerItem_->addSubMenuItem(loadAverageGraphItem_, "graph");
    const Item columns = createMenuItem();
    columns->view()->setFrame({0, 0, kWidth, 17});
    loadLoadColumns(*columns);
    loadAverageContainerItem_->addSubMenuItem(columns, "text");
}

void StatInterfaceCPU::loadLoadColumns(VTRMenuItem& row) {
    constexpr std::array<double, 3> kColumns{10, 76, 142};
    for (std::size_t column = 0; column < kColumns.size(); ++column) {
        const auto view = StatInterfaceView::initContainerWithFrame<StatInterfaceView>(
            {kColumns[column], 0, 61, 15});
        view->setBackgroundDisabled(true);
        row.view()->addSubview(view);
        const auto label = createLabelField(Painting::Alignment::left, {12, 0, 49, 15});
        label->setStringValue("");
        view->addSubview(label);
        loadValues_[column] = label;
        const auto dot = std::make_shared<DotImageView>(Rect{0, 2, 9, 10});
        dot->setTag(static_cast<std::int64_t>(column) + 1);
        dot->updateImage();
        view->addSubview(dot);
    }
}

void StatInterfaceCPU::loadCoreMenu() {
    threadsItem_ = createComboTextMenuItem(text("Threads"), "", kWidth, kTextHeight);
    tasksItem_ = createComboTextMenuItem(text("Processes"), "", kWidth, kTextHeight);
    const CPUStatCollector& cpu = CPUStatCollector::sharedCPUCollector();
    const Rect rect = graphRect(205, 50, 9, 0);
    coresHyperItem_ = createGraphs<CPUGraph>(samplesOf(cpu.physicalCores()), rect);
    coresNormalItem_ = createGraphs<CPUGraph>(samplesOf(cpu.items()), rect);
    VTRMenu& rows = *coresMenu_;
    rows.addItem(createFillerItem(&rows, "filler-cores-top", VTRMakeSize(kWidth, 2)));
    rows.addItem(createHeaderItem(nullptr, "", text("CORES"), kWidth));
    rows.addItem(createFillerItem(&rows, "filler-cores-header-bottom", VTRMakeSize(kWidth, 1)));
    rows.addItem(createFillerItem(&rows, "filler-cores-bottom", VTRMakeSize(kWidth, 5)));
    rows.addItem(createHeaderItem(nullptr, "", text("OTHER"), kWidth));
    rows.addItem(createFillerItem(&rows, "filler-tasks-top", VTRMakeSize(kWidth, 7)));
    rows.addItem(tasksItem_);
    rows.addItem(threadsItem_);
    rows.addItem(createFillerItem(&rows, "filler-tasks-bottom", VTRMakeSize(kWidth, 7)));
    updateCoresMenu();
}

void StatInterfaceCPU::updateCoresMenu() {
    for (const Item& stack : {coresNormalItem_, coresHyperItem_})
        if (VTRMenu* const holder = stack->menu())
            holder->removeItem(*stack);
    const bool pairs = CPUStatCollector::sharedCPUCollector().hyperThreading() &&
                       VTRBoolForKey("CPU_CombineLogicalCores");
    coresMenu_->insertItem(pairs ? coresHyperItem_ : coresNormalItem_, kCoresIndex);
}

void StatInterfaceCPU::loadUptimeMenu() {
    loadHistoryItem_ = createHistoryGraphs<LoadAverageGraph>(
        kHistoryScales, 1, &LoadStatCollector::sharedLoadCollector());
    loadMenu_->addItem(loadHistoryItem_);
}

void StatInterfaceCPU::loadHistoryMenu() {
    cpuHistoryItem_ =
        createHistoryGraphs<CPUGraph>(kHistoryScales, 1, &CPUStatCollector::sharedCPUCollector());
    cpuHistoryItem_->setTitle("cpu_history");
    historyMenu_->addItem(cpuHistoryItem_);
}

void StatInterfaceCPU::loadGraphRows() {
    graphItem_ =
        graphRow<CPUGraph>(graphRect(kWidth, 50, 10, 3), CPUStatCollector::sharedCPUCollector());
    graphItem_->setSubmenu(historyMenu_);
    graphTextItem_ = createMenuItem();
    graphTextItem_->setSubmenu(coresMenu_);
    const auto legend = [](std::string_view label, int tag) {
        return createComboTextMenuItemWithLegend(text(label), "100%", 0, kTextHeight, tag);
    };
    iowaitItem_ = legend("I/O Wait", 4);
    stealItem_ = legend("Stolen", 5);
    userItem_ = legend("User", 1);
    systemItem_ = legend("System", 2);
    idleItem_ = legend("Idle", 3);
    graphTextItem_->addSubMenuItem(
        createFillerItem(menu(), "spacer-grap-text-top", VTRMakeSize(kWidth, 3)), "spacer-top");
    graphTextItem_->addSubMenuItem(userItem_, "user");
    graphTextItem_->addSubMenuItem(systemItem_, "system");
    graphTextItem_->addSubMenuItem(idleItem_, "idle");
    legendEnd_ = createFillerItem(menu(), "spacer-grap-text-bottom", VTRMakeSize(kWidth, 2));
    graphTextItem_->addSubMenuItem(legendEnd_, "spacer-bottom");
    updateWaitRows();
}

/// Below idle, where the user wants to know what of the time was spent waiting.
void StatInterfaceCPU::updateWaitRows() {
    const bool wanted = VTRBoolForKey("CPU_DropdownShowIOWait");
    if (wanted == (graphTextItem_->itemWithKey("iowait") != nullptr))
        return;
    for (const Item& row : {iowaitItem_, stealItem_, legendEnd_})
        graphTextItem_->removeItem(*row);
    if (wanted) {
        graphTextItem_->addSubMenuItem(iowaitItem_, "iowait");
        graphTextItem_->addSubMenuItem(stealItem_, "steal");
    }
    graphTextItem_->addSubMenuItem(legendEnd_, "spacer-bottom");
    graphTextItem_->anyView()->updateColors();  // the theme may have changed without them
}

StatInterface::Items StatInterfaceCPU::mainRows() {
    VTRMenu* const rows = menu();
    const auto filler = [rows](std::string_view key, int height) {
        return createFillerItem(rows, key, VTRMakeSize(kWidth, height));
    };
    const auto header = [rows](std::string_view key, std::string_view title) {
        return createHeaderItem(rows, key, text(title), kWidth);
    };
    Items items{createMainHeaderItem(rows, "header-cpu", text("CPU"), kWidth), graphItem_,
                graphTextItem_, header("header-processes", "PROCESSES"),
                filler("spacer-processes-top", 7)};
    for (const StatInterfaceProcessItem& process : processes_)
        items.push_back(process.item());
    items.push_back(filler("spacer-processes-bottom", 2));
    addGPURows(items);
    items.insert(items.end(), {filler("filler-gpus", 2), header("header-load", "LOAD AVERAGE"),
                               loadAverageContainerItem_, header("header-uptime", "UPTIME"),
                               filler("filler-uptime-top", 5), uptimeItem_});
    if (VTRBoolForKey("DropdownShowLauncher"))
        items.insert(
            items.end(),
            {createSpacerItem(rows, "spacer-launcher", VTRMakeSize(kWidth, 12)), buttonsMenuItem_});
    else
        items.push_back(filler("filler-nolauncher", 5));
    return items;
}

void StatInterfaceCPU::rebuildMenu() { rebuildMenuWithItems(mainRows()); }

void StatInterfaceCPU::updateMenu(VTRMenu& menu) {
    for (const Item& item : menu.itemArray()) {
        if (StatInterfaceView* const view = item->view())
            view->setNeedsDisplay();
        if (item->submenu())
            updateMenu(*item->submenu());
    }
}

void StatInterfaceCPU::setMainMenuOpen(bool isOpen) {
    setEnabled(isOpen);
    menu()->setVisible(isOpen);
    ports().localNotifications.post("VTRMenuStateChanged");
}

void StatInterfaceCPU::menuWillOpen(VTRMenu& opening) {
    if (&opening == menu()) {
        updateWaitRows();
        setMainMenuOpen(true);
        forceUpdate();
        GPUStatCollector& gpus = GPUStatCollector::sharedGPUCollector();
        gpus.setEnabled(true);
        gpus.updateStats();
        VTRDaemonConnection::sharedConnection().startProcessesWithKey(kProcessesKey);
    } else if (&opening == uptimeMenu_.get()) {
        uptimeMenuOpen_ = true;
        forceUpdate();
    }
}

void StatInterfaceCPU::menuDidClose(VTRMenu& closing) {
    menuWillHighlightItem(closing, nullptr);
    if (&closing == menu()) {
        setMainMenuOpen(false);
        GPUStatCollector::sharedGPUCollector().setEnabled(false);
        VTRDaemonConnection::sharedConnection().stopProcessesWithKey(kProcessesKey);
    } else if (&closing == uptimeMenu_.get()) {
        uptimeMenuOpen_ = false;
    }
}

void StatInterfaceCPU::menuWillHighlightItem(VTRMenu& menu, VTRMenuItem* item) {
    ports().mainQueue.after(0, [self = self_.handle(), rows = menu.handle(),
                                row = item != nullptr ? item->shared_from_this() : nullptr] {
        if (self.get() != nullptr && rows.get() != nullptr)
            self.get()->highlight(*rows.get(), row);
    });
}

void StatInterfaceCPU::highlight(VTRMenu& rows, const Item& item) {
    highlightRow(rows, item.get());
    if (item && &rows == menu() && item->menu() == menu() && !item->title().empty())
        bringHistoryTo(*item);
}

}  // namespace vantor::inline VANTOR_MODULE
