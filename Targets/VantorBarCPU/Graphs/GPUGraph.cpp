#include "Targets/VantorBarCPU/Graphs/GPUGraph.h"

#include <fmt/format.h>

#include "Shared/Collectors/GPUStatCollector.h"
#include "Targets/VantorBarCPU/Graphs/GraphColours.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

HistoryGraphConfig memoryConfig() {
    return {
        .graphs = {{.index = 0, .keys = {0}, .fillColor = kBlueFill, .strokeColor = kBlueStroke}},
        .useCache = true};
}

HistoryGraphConfig processorConfig() {
    return {.graphs = {{.index = 0,
                        .keys = {1},
                        .divide = 100.0F,
                        .fillColor = kBlueFill,
                        .strokeColor = kBlueStroke}},
            .useCache = true};
}

double newestOfCollector(std::int64_t storageMode) {
    return GPUStatCollector::sharedGPUCollector().idForInterval(static_cast<int>(storageMode));
}

/// Below 0 it isn't known.
std::string percentText(double percent) {
    return percent >= 0 ? fmt::format("{:.0f}%", percent) : "";
}

}  // namespace

GPUMemoryGraph::GPUMemoryGraph(const Rect& frame) : HistoryGraph(frame, memoryConfig()) {}

void GPUMemoryGraph::draw(Painting::Context& context) {
    setLatestSampleID(newestOfCollector(storageMode()));
    HistoryGraph::draw(context);
    drawRange(context);
}

std::string GPUMemoryGraph::valueText(std::size_t column) const {
    return percentText(100 * columns().rawValue(column, 0));
}

GPUProcessorGraph::GPUProcessorGraph(const Rect& frame) : HistoryGraph(frame, processorConfig()) {}

void GPUProcessorGraph::draw(Painting::Context& context) {
    setLatestSampleID(newestOfCollector(storageMode()));
    HistoryGraph::draw(context);
    drawRange(context);
}

std::string GPUProcessorGraph::valueText(std::size_t column) const {
    return percentText(columns().rawValue(column, 1));
}

}  // namespace vantor::inline VANTOR_MODULE
