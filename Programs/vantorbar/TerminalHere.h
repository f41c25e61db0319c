#pragma once

#include <string>

#include "Hosts/Text/TerminalShape.h"

namespace vantor {

/// What this process's environment says of its terminal.
struct TerminalHere {
    std::string term, colorTerm, noColor, codeset;
    TerminalAbilities abilities() const noexcept {
        return terminalAbilities({term, colorTerm, noColor, codeset});
    }
};

TerminalHere terminalHere();

}  // namespace vantor
