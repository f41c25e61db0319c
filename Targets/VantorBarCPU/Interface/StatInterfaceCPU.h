#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/WeakHandle.h"
#include "Shared/StatInterface.h"
#include "Shared/VTRProcessesCallBackProtocol.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceGPUItem.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceProcessItem.h"

namespace vantor::inline VANTOR_MODULE {

class GPUStatCollectorItem;
class StatInterfaceTextField;

/// The dropdown of the processors. Its rows and submenus are built once and live as long as the
/// module; what changes while it is open are texts and graphs. Closed, it costs next to nothing.
/// Shape:  a main menu, and submenus for the cores, the history, the load and the uptime.
/// Thread: main.
class StatInterfaceCPU final : public StatInterface, public VTRProcessesCallBackProtocol {
public:
    StatInterfaceCPU();
    ~StatInterfaceCPU() override;

    /// Orders the rows of the main menu.
    void rebuildMenu();
    /// Shows a graph for each core, or for each pair of threads of one.
    void updateCoresMenu();
    void themeChange() { updateMenu(*menu()); }
    /// Paints all rows of a menu and of those below it anew.
    static void updateMenu(VTRMenu& menu);

    // News of a collector at a scale; 0 is the scale of now.
    void cpuCollectorUpdatedForMode(int mode);
    void loadCollectorUpdatedForMode(int mode);
    void gpuCollectorUpdatedForMode(int mode);
    void forceUpdate();
    /// The graphs of the history show the graphics processor that a row's title names, from now on.
    void resetGraphs(const std::string& title);
    void processesUpdated(const PropertyValue::Dictionary& response) override;

    // In the user's words; "" for what isn't known.
    std::string uptime() const;
    std::string awakeTime() const;
    std::string sleepTime() const;
    std::string bootTime() const;

    void menuWillOpen(VTRMenu& menu) override;
    void menuDidClose(VTRMenu& menu) override;
    /// Takes effect when the main queue runs next: hosts call from inside their tracking.
    void menuWillHighlightItem(VTRMenu& menu, VTRMenuItem* item) override;

    VTRMenu& coresMenu() const noexcept { return *coresMenu_; }
    VTRMenu& historyMenu() const noexcept { return *historyMenu_; }
    VTRMenu& loadMenu() const noexcept { return *loadMenu_; }
    VTRMenu& uptimeMenu() const noexcept { return *uptimeMenu_; }
    const std::vector<std::unique_ptr<StatInterfaceGPUItem>>& gpuItems() const noexcept {
        return gpuItems_;
    }
    StatInterfaceGPUItem* gpuItemWithKey(std::string_view key) const noexcept;

private:
    using Item = std::shared_ptr<VTRMenuItem>;

    void loadInterface();
    void loadUptimeRows();
    void loadLoadRow();
    void loadLoadColumns(VTRMenuItem& row);
    void loadCoreMenu();
    void loadUptimeMenu();
    void loadHistoryMenu();
    void loadGraphRows();
    void updateWaitRows();
    Items mainRows();
    void loadGPUMenu();
    void addGPURows(Items& rows);
    void showGPU(const GPUStatCollectorItem& item, bool& rebuild);
    bool removeMissingGPUs();
    void bringHistoryTo(VTRMenuItem& row);
    void showShares();
    void showUptime();
    void highlight(VTRMenu& rows, const Item& item);
    void setMainMenuOpen(bool isOpen);

    bool uptimeMenuOpen_ = false;
    std::shared_ptr<VTRMenu> coresMenu_, loadMenu_, historyMenu_, uptimeMenu_;
    Item buttonsMenuItem_;
    Item cpuHistoryItem_, loadHistoryItem_, gpuMemoryHistoryItem_, gpuProcessorHistoryItem_;
    Item uptimeItem_, bootTimeItem_, sleepingItem_, awakeItem_;
    Item fpsItem_, tasksItem_, threadsItem_;
    Item coresNormalItem_, coresHyperItem_;
    Item loadAverageContainerItem_, loadAverageGraphItem_;
    std::array<std::shared_ptr<StatInterfaceTextField>, 3> loadValues_;  // 1, 5 and 15 minutes
    Item userItem_, systemItem_, idleItem_;
    Item iowaitItem_, stealItem_, legendEnd_;
    Item graphItem_, graphTextItem_;
    std::vector<StatInterfaceProcessItem> processes_;
    std::vector<std::unique_ptr<StatInterfaceGPUItem>> gpuItems_;
    WeakSource<StatInterfaceCPU> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
