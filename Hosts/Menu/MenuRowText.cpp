#include "Hosts/Menu/MenuRowText.h"

#include "Shared/Buttons/StatInterfaceMenuButton.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/Views/StatInterfaceActionView.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

template <class Field>
std::string textOf(const std::shared_ptr<Field>& field) {
    return field ? field->stringValue() : std::string();
}

std::string nameOf(const VTRMenuItem& item) {
    if (std::string label = textOf(item.label); !label.empty())
        return label;
    if (item.button && !item.button->title().empty())
        return item.button->title();
    const View* const view = item.anyView();
    if (const auto* const action = dynamic_cast<const StatInterfaceActionView*>(view))
        return action->title();
    if (const auto* const header = dynamic_cast<const HeaderView*>(view))
        return header->title();
    return {};
}

}  // namespace

MenuRowText menuRowText(const VTRMenuItem& item) {
    MenuRowText text{nameOf(item), textOf(item.field)};
    for (const auto& inside : item.menuItemsOrdered()) {
        if (!text.name.empty())
            break;
        text = menuRowText(*inside);
    }
    return text;
}

}  // namespace vantor
