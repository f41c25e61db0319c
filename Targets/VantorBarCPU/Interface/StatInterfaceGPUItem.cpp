#include "Targets/VantorBarCPU/Interface/StatInterfaceGPUItem.h"

#include <utility>

#include <fmt/format.h>

#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemGraphBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/VTRTranslations.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kWidth = 225, kBarHeight = 21, kBarWidth = 103;

std::shared_ptr<VTRMenuItem> barRow(std::string_view label, std::string_view title,
                                    std::string_view key) {
    auto item = createBarGraphItemWithLabel(VTRLocalizedString(label, {}, "cpu"), kWidth,
                                            kBarHeight, kBarWidth);
    item->view()->setHighlightable(true);
    const std::shared_ptr<VTRMenu> submenu = createMenu();
    submenu->addItem(createFillerItem(submenu.get(), "filler-top", VTRMakeSize(kWidth, 3)));
    item->setSubmenu(submenu);
    item->setTitle(fmt::format("{}{}", title, key));
    return item;
}

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
    for (auto at = text.find(what); at != text.npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

}  // namespace

StatInterfaceGPUItem::StatInterfaceGPUItem(std::string itemKey, std::string_view title)
    : key(std::move(itemKey)), memoryMenuitem(barRow("Memory", kMemoryTitle, key)),
      processorMenuitem(barRow("Processor", kProcessorTitle, key)),
      header(createHeaderItem(nullptr, "", title, kWidth)) {}

std::string gpuModelName(std::string_view text) {
    std::string name(text);
    replaceAll(name, "ATY", "ATI");
    replaceAll(name, "ATI,RadeonX1600", "Radeon X1600");
    replaceAll(name, "ATI,RV370", "Radeon X600 Pro");
    return name;
}

}  // namespace vantor::inline VANTOR_MODULE
