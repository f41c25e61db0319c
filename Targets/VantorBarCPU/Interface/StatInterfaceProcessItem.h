#pragma once

#include <memory>
#include <string_view>

#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

/// A row of the list of the busiest processes. It stays; a new list only changes its texts.
/// Thread: main.
class StatInterfaceProcessItem {
public:
    StatInterfaceProcessItem();
    /// A row with two columns of values.
    static StatInterfaceProcessItem initDoubleItem();

    const std::shared_ptr<VTRMenuItem>& item() const noexcept { return item_; }
    void show(std::string_view name, float percent);
    /// Fits the column of the value to its text.
    void updateSize();

private:
    explicit StatInterfaceProcessItem(std::shared_ptr<VTRMenuItem> item);

    std::shared_ptr<VTRMenuItem> item_;
};

}  // namespace vantor::inline VANTOR_MODULE
