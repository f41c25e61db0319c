#include "Shared/Graphs/GraphTooltip.h"

#include <cmath>

#include <fmt/format.h>

#include "Platform/RegionalSettings.h"
#include "Platform/TimeZone.h"
#include "Shared/Graphs/BarGraph.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::int64_t kHour = 1, kWeek = 3;  // storage modes

/// As the user writes times, with seconds where columns are seconds apart.
std::string momentPattern(std::int64_t storageMode) {
    std::string pattern = ProcessContext::current().ports().regionalSettings.shortTimeFormat();
    if (const auto minutes = pattern.find("mm");
        storageMode <= kHour && minutes != std::string::npos)
        pattern.insert(minutes + 2, ":ss");
    return storageMode == kWeek ? "EEE " + pattern : pattern;
}

std::string momentText(double time, std::int64_t storageMode) {
    const Ports& ports = ProcessContext::current().ports();
    const PropertyValue language = VTRObjectForKey("language");
    return ports.regionalSettings.dateText(
        time + ports.timeZone.secondsFromGMT(time), momentPattern(storageMode),
        language ? std::optional(language.stringValue()) : std::nullopt);
}

std::string noData() { return VTRLocalizedString("No data", {}, "cpu"); }

}  // namespace

std::string tooltipText(double time, std::int64_t storageMode, std::string_view values) {
    const std::string told = values.empty() ? noData() : std::string(values);
    const std::string moment = time > 0 ? momentText(time, storageMode) : "";
    return moment.empty() ? told : fmt::format("{} \u2013 {}", moment, told);
}

std::optional<std::string> tooltipAt(View& row, Point point) {
    if (!VTRBoolForKey("CPU_DropdownShowTooltips"))
        return std::nullopt;
    const View* const hit = row.hitTest(point);
    if (const auto* const bar = dynamic_cast<const BarGraph*>(hit)) {
        const auto percent = 100 * static_cast<double>(bar->percentage());
        return std::isfinite(percent) ? fmt::format("{:.0f}%", percent) : noData();
    }
    const auto* const graph = dynamic_cast<const HistoryGraph*>(hit);
    if (graph == nullptr)
        return std::nullopt;
    const Point corner = graph->convertToRoot({0, 0}), top = row.convertToRoot({0, 0});
    return graph->tooltipAt({point.x - (corner.x - top.x), graph->frame().height / 2});
}

}  // namespace vantor::inline VANTOR_MODULE
