#include "Programs/vantorbar/DropdownDump.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "Programs/vantorbar/DropdownMenus.h"
#include "Shared/Buttons/StatInterfaceButton.h"
#include "Shared/Buttons/StatInterfaceMenuButton.h"
#include "Shared/Graphs/BarGraph.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/Views/ImageView.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

using json = nlohmann::ordered_json;

json numberState(double number) { return std::isfinite(number) ? json(number) : json(nullptr); }

json frameState(const Rect& frame) {
    return {numberState(frame.x), numberState(frame.y), numberState(frame.width),
            numberState(frame.height)};
}

json textState(const StatInterfaceTextField* field) {
    return field != nullptr ? json(field->stringValue()) : json(nullptr);
}

json nullWhereEmpty(const std::string& text) { return text.empty() ? json(nullptr) : json(text); }

json graphState(const VTRMenuItem& item) {
    if (item.historyGraph)
        return {{"class", item.historyGraph->className()},
                {"storageMode", item.historyGraph->storageMode()},
                {"peak", numberState(item.historyGraph->peak())},
                {"sizeType", item.historyGraph->sizeType()}};
    if (item.graph)
        return {{"class", item.graph->className()},
                {"percentage", numberState(static_cast<double>(item.graph->percentage()))}};
    return nullptr;
}

/// Where a view inside `row` is in the row's own coordinates.
Rect frameIn(const View& row, const View& view) {
    Rect frame = view.frame();
    for (const View* around = view.superview(); around != &row && around != nullptr;
         around = around->superview()) {
        const View* const outer = around->superview();
        if (outer != nullptr && outer->isFlipped() != around->isFlipped())
            frame.y = around->frame().height - frame.y - frame.height;
        frame.x += around->frame().x;
        frame.y += around->frame().y;
    }
    return frame;
}

/// A control's texts and tags; nothing for a view that is a container.
json controlState(const View& row, const View& view) {
    json text = nullptr, tag = nullptr;
    if (const auto* const field = dynamic_cast<const StatInterfaceTextField*>(&view))
        text = field->stringValue();
    else if (const auto* const button = dynamic_cast<const StatInterfaceMenuButton*>(&view))
        text = button->title();
    else if (const auto* const launcher = dynamic_cast<const StatInterfaceButton*>(&view))
        tag = launcher->tag();
    else if (const auto* const dot = dynamic_cast<const DotImageView*>(&view))
        tag = dot->tag();
    else if (dynamic_cast<const ImageView*>(&view) == nullptr &&
             dynamic_cast<const DotView*>(&view) == nullptr &&
             dynamic_cast<const TickView*>(&view) == nullptr &&
             dynamic_cast<const BarGraph*>(&view) == nullptr &&
             dynamic_cast<const HistoryGraph*>(&view) == nullptr)
        return nullptr;
    return {{"class", view.className()},
            {"frame", frameState(frameIn(row, view))},
            {"text", std::move(text)},
            {"tag", std::move(tag)}};
}

bool isSubRow(const VTRMenuItem& item, const View& view) {
    return std::ranges::any_of(item.menuItemsOrdered(),
                               [&](const auto& row) { return row->alternateView() == &view; });
}

void addControls(const VTRMenuItem& item, const View& row, const View& view, json& controls) {
    for (const auto& inside : view.subviews()) {
        if (isSubRow(item, *inside))
            continue;
        if (json control = controlState(row, *inside); !control.is_null())
            controls.push_back(std::move(control));
        addControls(item, row, *inside, controls);
    }
}

std::string titleState(const VTRMenuItem& item) {
    const auto* const header = dynamic_cast<const HeaderView*>(item.anyView());
    return item.title().empty() && header != nullptr ? header->title() : item.title();
}

json rowState(VTRMenuExtra& extra, const VTRMenuItem& item, json key, const Rect& frame) {
    const StatInterfaceView* const view = item.anyView();
    json controls = json::array(), rows = json::array();
    if (view != nullptr)
        addControls(item, *view, *view, controls);
    for (const auto& row : item.menuItemsOrdered())
        rows.push_back(
            rowState(extra, *row, row->key(), row->anyView() ? row->anyView()->frame() : Rect{}));
    return {{"key", std::move(key)},
            {"title", titleState(item)},
            {"view", view != nullptr ? json(view->className()) : json(nullptr)},
            {"frame", frameState(frame)},
            {"label", textState(item.label.get())},
            {"field", textState(item.field.get())},
            {"value2", textState(item.value2.get())},
            {"graph", graphState(item)},
            {"submenu", nullWhereEmpty(submenuName(extra, item))},
            {"highlighted", view != nullptr && view->menuItemHighlighted()},
            {"controls", std::move(controls)},
            {"rows", std::move(rows)}};
}

json keyInCache(VTRMenu& menu, const VTRMenuItem& item) {
    for (const auto& [key, cached] : menu.cache())
        if (cached.get() == &item)
            return key;
    return nullptr;
}

json menuState(VTRMenuExtra& extra, VTRMenu* menu) {
    json rows = json::array();
    if (menu == nullptr)
        return rows;
    double y = 0;
    for (const auto& item : menu->itemArray()) {
        const Size size = item->view() ? item->view()->frame().size() : Size{};
        rows.push_back(
            rowState(extra, *item, keyInCache(*menu, *item), {0, y, size.width, size.height}));
        y += size.height;
    }
    return rows;
}

bool isEnabled(const VTRMenuExtra& extra) {
    const StatInterfaceCPU* const interface = interfaceOf(extra);
    return interface != nullptr && interface->enabled();
}

json graphicsState(VTRMenuExtra& extra) {
    json state = json::object();
    if (const StatInterfaceCPU* const interface = interfaceOf(extra))
        for (const auto& gpu : interface->gpuItems())
            state[gpu->key] = {
                {"memory", menuState(extra, gpu->memoryMenuitem->submenu().get())},
                {"processor", menuState(extra, gpu->processorMenuitem->submenu().get())}};
    return state;
}

}  // namespace

nlohmann::ordered_json dropdownState(VTRMenuExtra& extra) {
    if (extra.isCombinedExtra())
        return {{"enabled", isEnabled(extra)}, {"combined", menuState(extra, extra.menu())}};
    json state{{"enabled", isEnabled(extra)}};
    for (const std::string_view name : {"main", "cores", "history", "load", "uptime"})
        state[std::string(name)] = menuState(extra, menuNamed(extra, name));
    state["gpus"] = graphicsState(extra);
    return state;
}

}  // namespace vantor
