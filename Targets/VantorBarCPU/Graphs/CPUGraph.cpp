#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "Shared/VTRTranslations.h"
#include "Targets/VantorBarCPU/Graphs/GraphColours.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr Colour kGreyStroke{0.8, 0.8, 0.8, 1};
constexpr double kPeakStep = 5;

HistoryGraphConfig cpuConfig() {
    return {.graphs = {{.index = 1,
                        .keys = {0, 1},
                        .divide = 100.0F,
                        .fillColor = kRedFill,
                        .strokeColor = kRedStroke},
                       {.index = 0,
                        .keys = {0},
                        .divide = 100.0F,
                        .fillColor = kBlueFill,
                        .strokeColor = kBlueStroke}},
            .useCache = true};
}

HistoryGraphConfig loadConfig() {
    return {
        .graphs = {{.index = 2, .keys = {0}, .fillColor = kBlueFill, .strokeColor = kBlueStroke},
                   {.index = 1,
                    .keys = {1},
                    .strokeColor = kRedStroke,
                    .storageModeLimit = 1,
                    .strokeWidth = 2},
                   {.index = 0,
                    .keys = {2},
                    .strokeColor = kGreyStroke,
                    .storageModeLimit = 1,
                    .strokeWidth = 2}},
        .useCache = true,
        .dynamicPeak = true};
}

double newestOf(const StatSamples* collector, std::int64_t storageMode) {
    return collector != nullptr ? collector->idForInterval(static_cast<int>(storageMode)) : 0;
}

}  // namespace

CPUGraph::CPUGraph(const Rect& frame) : HistoryGraph(frame, cpuConfig()) {}

void CPUGraph::draw(Painting::Context& context) {
    setLatestSampleID(newestOf(collector(), storageMode()));
    HistoryGraph::draw(context);
    drawRange(context);
}

std::string CPUGraph::valueText(std::size_t column) const {
    return fmt::format("{} {:.0f}%, {} {:.0f}%", VTRLocalizedString("User", {}, "cpu"),
                       std::round(columns().rawValue(column, 0)),
                       VTRLocalizedString("System", {}, "cpu"),
                       std::round(columns().rawValue(column, 1)));
}

LoadAverageGraph::LoadAverageGraph(const Rect& frame) : HistoryGraph(frame, loadConfig()) {}

void LoadAverageGraph::draw(Painting::Context& context) {
    setLatestSampleID(newestOf(collector(), storageMode()));
    HistoryGraph::draw(context);
    drawMinimumString(context, "0");
    fmt::basic_memory_buffer<char, 32> text;
    fmt::format_to(std::back_inserter(text), "{:.0f}", peak());
    drawMaximumString(context, {text.data(), text.size()});
    drawRange(context);
}

std::string LoadAverageGraph::valueText(std::size_t column) const {
    return fmt::format("{:.2f}, {:.2f}, {:.2f}", columns().rawValue(column, 0),
                       columns().rawValue(column, 1), columns().rawValue(column, 2));
}

bool LoadAverageGraph::calculatePeak() {
    const auto columns = static_cast<std::size_t>(std::max(std::trunc(frame().width), 0.0));
    const double greatest = this->columns().greatestValue(columns);
    const double before = peak();
    setPeak(std::max(std::ceil(greatest / kPeakStep) * kPeakStep, kPeakStep));
    return peak() != before;
}

}  // namespace vantor::inline VANTOR_MODULE
