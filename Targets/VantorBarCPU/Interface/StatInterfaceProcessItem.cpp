#include "Targets/VantorBarCPU/Interface/StatInterfaceProcessItem.h"

#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kWidth = 225, kHeight = 15;
constexpr double kValueMargin = 10, kRightInset = 8, kLabelRoom = 30;

}  // namespace

StatInterfaceProcessItem::StatInterfaceProcessItem()
    : item_(createComboTextMenuItem("Process", "8888.8%", kWidth, kHeight)) {
    item_->label->setStringValue("");
    item_->field->setStringValue("");
}

StatInterfaceProcessItem::StatInterfaceProcessItem(std::shared_ptr<VTRMenuItem> item)
    : item_(std::move(item)) {}

StatInterfaceProcessItem StatInterfaceProcessItem::initDoubleItem() {
    return StatInterfaceProcessItem(createDoubleProcessItem(kWidth, kHeight));
}

void StatInterfaceProcessItem::show(std::string_view name, float percent) {
    item_->label->setStringValue(name);
    item_->field->setStringValue(fmt::format("{:.1f}%", percent));
}

void StatInterfaceProcessItem::updateSize() {
    StatInterfaceTextField& field = *item_->field;
    const double width = std::ceil(widthOfText(field.stringValue(), field.font())) + kValueMargin;
    const double row = item_->anyView()->frame().width;
    const Rect place = field.frame();
    field.setFrame({row - kRightInset - width, place.y, width, place.height});
    const Rect label = item_->label->frame();
    item_->label->setFrame({label.x, label.y, row - kLabelRoom - width, label.height});
}

}  // namespace vantor::inline VANTOR_MODULE
