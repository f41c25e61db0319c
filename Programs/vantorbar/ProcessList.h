#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Hosts/Text/TerminalShape.h"

namespace vantor {

struct ListedProcess {
    std::string name;
    double percent = 0;  // 100 is one processor
};

/// The processes of a daemon's response, in its order. A record without a name or a figure is
/// listed without; a response without processes lists none.
std::vector<ListedProcess> processesIn(const PropertyValue::Dictionary& response);

/// One line of JSON, with the time in seconds since 1970.
std::string processesAsJSON(double time, const std::vector<ListedProcess>& processes);

/// A heading, and a line for each process. No line is wider than that many columns, and of names
/// nothing reaches the terminal but letters that it has.
std::vector<std::string> processesAsLines(const std::vector<ListedProcess>& processes,
                                          std::size_t columns, Glyphs glyphs);

}  // namespace vantor
