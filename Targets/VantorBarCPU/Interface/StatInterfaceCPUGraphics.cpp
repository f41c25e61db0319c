#include <algorithm>
#include <string>

#include <fmt/format.h>

#include "Foundation/LetterCase.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Graphs/BarGraph.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemGraphBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Targets/VantorBarCPU/Graphs/GPUGraph.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"

// The sections of the graphics processors, which come and go while the program runs.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kWidth = 225;
constexpr int kHistoryScales = 3;

void takeOut(VTRMenuItem& item) {
    if (VTRMenu* const holder = item.menu())
        holder->removeItem(item);
}

void showShare(VTRMenuItem& row, double share) {
    row.graph->setPercentage(static_cast<float>(share));
    row.graph->setNeedsDisplay();
}

std::string graphKey(int scale) { return fmt::format("graph-{}", scale); }

std::string keyInTitle(std::string title) {
    for (const std::string_view prefix : {kMemoryTitle, kProcessorTitle})
        for (auto at = title.find(prefix); at != title.npos; at = title.find(prefix))
            title.erase(at, prefix.size());
    return title;
}

}  // namespace

void StatInterfaceCPU::loadGPUMenu() {
    gpuProcessorHistoryItem_ = createHistoryGraphs<GPUProcessorGraph>(kHistoryScales, 1, nullptr);
    gpuMemoryHistoryItem_ = createHistoryGraphs<GPUMemoryGraph>(kHistoryScales, 1, nullptr);
}

void StatInterfaceCPU::addGPURows(Items& rows) {
    for (std::size_t index = 0; index < gpuItems_.size(); ++index) {
        const StatInterfaceGPUItem& gpu = *gpuItems_[index];
        rows.push_back(gpu.header);
        rows.push_back(createFillerItem(menu(), fmt::format("spacer-gpu-{}-top", gpu.key),
                                        VTRMakeSize(kWidth, 5)));
        if (index == 0)
            rows.push_back(fpsItem_);
        rows.push_back(gpu.memoryMenuitem);
        if (gpu.hasProcessorUsage)
            rows.push_back(gpu.processorMenuitem);
    }
}

StatInterfaceGPUItem* StatInterfaceCPU::gpuItemWithKey(std::string_view key) const noexcept {
    const auto found =
        std::ranges::find_if(gpuItems_, [key](const auto& gpu) { return gpu->key == key; });
    return found == gpuItems_.end() ? nullptr : found->get();
}

void StatInterfaceCPU::gpuCollectorUpdatedForMode(int mode) {
    if (mode != 0) {
        // Those of the load are painted when the pointer comes to their row.
        if (const VTRMenuItem* const item = gpuMemoryHistoryItem_->itemWithKey(graphKey(mode)))
            item->historyGraph->setNeedsDisplay();
        return;
    }
    const GPUStatCollector& collector = GPUStatCollector::sharedGPUCollector();
    for (const auto& gpu : gpuItems_)
        gpu->exists = false;
    fpsItem_->field->setStringValue(fmt::format("{:.1f}", collector.fps()));
    bool rebuild = false;
    for (std::size_t index = 0; index < collector.items().size(); ++index)
        showGPU(collector.gpu(index), rebuild);
    rebuild = removeMissingGPUs() || rebuild;
    if (rebuild)
        rebuildMenu();
}

void StatInterfaceCPU::showGPU(const GPUStatCollectorItem& item, bool& rebuild) {
    if (item.temporary() || !item.connected)
        return;
    const std::string key = item.key.value_or("");
    if (gpuItemWithKey(key) == nullptr) {
        gpuItems_.push_back(std::make_unique<StatInterfaceGPUItem>(
            key, gpuModelName(upperCased(item.model.value_or("")))));
        rebuild = true;
    }
    StatInterfaceGPUItem& gpu = *gpuItemWithKey(key);
    gpu.exists = true;
    showShare(*gpu.memoryMenuitem, item.usedMemory() / item.totalyMemory);
    if (item.hasProcessorUsage()) {
        showShare(*gpu.processorMenuitem, item.processor() / 100);
        if (!std::exchange(gpu.hasProcessorUsage, true))
            rebuild = true;
    } else if (std::exchange(gpu.hasProcessorUsage, false)) {
        rebuild = false;  // its row stays until something else rebuilds the menu
    }
}

/// Whether there were any.
bool StatInterfaceCPU::removeMissingGPUs() {
    return std::erase_if(gpuItems_, [](const auto& gpu) {
               if (gpu->exists)
                   return false;
               for (const Item& row : {gpu->header, gpu->memoryMenuitem, gpu->processorMenuitem})
                   takeOut(*row);
               return true;
           }) > 0;
}

/// There is one stack of graphs for the memory and one for the load. It comes to the row that the
/// pointer is on.
void StatInterfaceCPU::bringHistoryTo(VTRMenuItem& row) {
    const auto move = [&row](const Item& stack) {
        takeOut(*stack);
        row.submenu()->addItem(stack);
    };
    if (row.submenu() && row.title().starts_with("gpu_memory"))
        move(gpuMemoryHistoryItem_);
    if (row.submenu() && row.title().starts_with("gpu_processor"))
        move(gpuProcessorHistoryItem_);
    resetGraphs(row.title());
}

void StatInterfaceCPU::resetGraphs(const std::string& title) {
    const StatSamples* const item =
        GPUStatCollector::sharedGPUCollector().itemWithKey(keyInTitle(title));
    for (int scale = 1; scale <= kHistoryScales; ++scale)
        for (const Item& stack : {gpuMemoryHistoryItem_, gpuProcessorHistoryItem_}) {
            HistoryGraph& graph = *stack->itemWithKey(graphKey(scale))->historyGraph;
            graph.setCollector(item);
            graph.setLatestSampleID(0);
            graph.setPeak(0);
            graph.setLow(0);
            graph.clearCache();
            graph.setNeedsDisplay();
        }
}

}  // namespace vantor::inline VANTOR_MODULE
