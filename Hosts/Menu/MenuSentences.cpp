#include "Hosts/Menu/MenuSentences.h"

#include <array>
#include <cmath>

#include <fmt/format.h>

#include "Hosts/Menu/MenuControls.h"
#include "Hosts/Menu/MenuRowText.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRTranslations.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

std::string word(std::string_view key) { return VTRLocalizedString(key, {}, "cpu"); }

std::string percent(double share) { return fmt::format("{:.0f}%", std::round(share)); }

/// The texts in the places of `format`, from the first one on.
template <std::size_t Count>
std::string filled(std::string format, const std::array<std::string, Count>& texts) {
    std::size_t from = 0;
    for (const std::string& text : texts) {
        const std::size_t place = format.find("%@", from);
        if (place == std::string::npos)
            break;
        format.replace(place, 2, text);
        from = place + text.size();
    }
    return format;
}

void append(std::string& sentence, std::string_view part) {
    if (part.empty())
        return;
    if (!sentence.empty())
        sentence += ", ";
    sentence += part;
}

/// The head that stands above a row.
std::string sectionOf(const MenuLayout& layout, std::size_t index) {
    for (std::size_t above = index + 1; above-- > 0;)
        if (const auto* const head =
                dynamic_cast<const HeaderView*>(layout.rows()[above].item->view()))
            return head->title();
    return {};
}

MenuRowDescription::Role roleOf(const VTRMenuItem& item) {
    if (dynamic_cast<const HeaderView*>(item.view()) != nullptr)
        return MenuRowDescription::Role::head;
    if (item.submenu())
        return MenuRowDescription::Role::menu;
    return isEnabled(item) ? MenuRowDescription::Role::item : MenuRowDescription::Role::text;
}

}  // namespace

std::string itemSentence() {
    const CPUStatCollector* const cpu = ProcessContext::current().existingCPUCollector();
    if (cpu == nullptr)
        return {};
    const statsample sample = cpu->sampleAtIndex(0, StorageType::now);
    if (sample.sampleID == 0)
        return {};
    const double user = std::round(sample.values[0]), system = std::round(sample.values[1]);
    return fmt::format("{} {}, {} {}, {} {}", word("User"), percent(user), word("System"),
                       percent(system), word("Idle"), percent(100 - user - system));
}

std::string graphSentence(std::string_view name, const HistoryGraph& graph) {
    const auto columns = static_cast<std::size_t>(std::max(0.0, graph.frame().width));
    const bool isLoad = graph.className() == "LoadAverageGraph";
    const auto figure = [&](std::size_t count) {
        const double value = graph.columns().greatestValue(count);
        return isLoad ? fmt::format("{:.2f}", value) : percent(100 * value);
    };
    std::string title(name);
    if (const auto range = graph.range())
        append(title, *range);
    return filled(VTRLocalizedString("Graph of %@: now %@, highest %@", {}, "common"),
                  std::array{title, figure(1), figure(std::max<std::size_t>(columns, 1))});
}

std::string rowSentence(const VTRMenuItem& item, std::string_view section) {
    std::string sentence;
    if (item.historyGraph)
        append(sentence, graphSentence(section, *item.historyGraph));
    if (item.menuItemsOrdered().empty()) {
        const MenuRowText text = menuRowText(item);
        append(sentence,
               text.value.empty() ? text.name : fmt::format("{} {}", text.name, text.value));
    }
    for (const auto& inside : item.menuItemsOrdered())
        append(sentence, rowSentence(*inside, section));
    return sentence;
}

MenuRowDescription describedRow(const MenuLayout& layout, std::size_t index) {
    const MenuLayout::Row& row = layout.rows()[index];
    return {roleOf(*row.item), rowSentence(*row.item, sectionOf(layout, index)),
            layout.frameOf(row)};
}

}  // namespace vantor
