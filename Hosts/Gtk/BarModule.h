#pragma once

#include <string_view>

namespace vantor {

class BarToolkit;

/// The toolkit, from the shared object beside the program. Opened once and never closed: its
/// types can't be registered a second time. Null where it can't be opened.
BarToolkit* barToolkit();
/// Why there is none; "" where there is one.
std::string_view barToolkitTrouble();

}  // namespace vantor
