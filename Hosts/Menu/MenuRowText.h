#pragma once

#include <string>

#include "Shared/VTRMenuItem.h"

namespace vantor {

/// What a row of a menu says, in words.
struct MenuRowText {
    std::string name, value;
};

/// From the texts in the row, or in the first of those inside it that has one. A row without any
/// has no name. Thread: main.
MenuRowText menuRowText(const VTRMenuItem& item);

}  // namespace vantor
