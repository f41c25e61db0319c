#include "Platform/Simulated/SimulatedMenuExtraHost.h"

namespace vantor::simulated {

void SimulatedMenuExtraHost::setMenuDown(bool down) noexcept {
    needsDisplay_ = needsDisplay_ || menuDown_ != down;
    menuDown_ = down;
}

void SimulatedMenuExtraHost::displayIfNeeded() {
    if (!needsDisplay_)
        return;
    needsDisplay_ = false;
    if (journal_ != nullptr)
        journal_->repaint();
}

void SimulatedMenuExtraHost::setLength(double length) {
    length_ = length;
    if (journal_ != nullptr)
        journal_->length(length);
}

void SimulatedMenuExtraHost::setViewFrameSize(Size size) {
    frame_.width = size.width;
    frame_.height = size.height;
}

}  // namespace vantor::simulated
