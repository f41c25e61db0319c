#include "Hosts/Text/SampleLine.h"

#include <cmath>
#include <iterator>
#include <limits>

#include <fmt/format.h>

namespace vantor {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr ProcessorShares kNoShares{kNoNumber, kNoNumber, kNoNumber};
constexpr std::array<double, 3> kNoLoads{kNoNumber, kNoNumber, kNoNumber};

void addNumber(std::string& into, double number) {
    if (std::isfinite(number))
        fmt::format_to(std::back_inserter(into), "{}", number);
    else
        into += "null";
}

void addField(std::string& into, std::string_view name, double number) {
    fmt::format_to(std::back_inserter(into), "\"{}\":", name);
    addNumber(into, number);
    into += ',';
}

void addThree(std::string& into, double first, double second, double third) {
    into += '[';
    addNumber(into, first);
    into += ',';
    addNumber(into, second);
    into += ',';
    addNumber(into, third);
    into += "],";
}

}  // namespace

void writeSampleLine(std::string& into, const TextFigures& figures) {
    into.clear();
    into += '{';
    const ProcessorShares mean = figures.mean.value_or(kNoShares);
    addField(into, "time", figures.time);
    addField(into, "user", mean.user);
    addField(into, "system", mean.system);
    addField(into, "nice", mean.nice);
    into += "\"cores\":[";
    for (const ProcessorShares& core : figures.cores)
        addThree(into, core.user, core.system, core.nice);
    if (!figures.cores.empty())
        into.pop_back();  // the comma behind the last one
    into += "],\"load\":";
    const auto& [one, five, fifteen] = figures.loads.value_or(kNoLoads);
    addThree(into, one, five, fifteen);
    fmt::format_to(std::back_inserter(into), "\"tasks\":{},\"threads\":{}}}\n", figures.tasks,
                   figures.threads);
}

}  // namespace vantor
