#pragma once

#include "Hosts/ItemHost.h"
#include "Hosts/Text/OutputStream.h"
#include "Hosts/Text/ScreenUpdate.h"
#include "Hosts/Text/Terminal.h"
#include "Hosts/Text/TerminalShape.h"
#include "Hosts/Text/TextFigures.h"
#include "Hosts/Text/TextFrame.h"

namespace vantor {

/// Shows the item's figures as a live picture that fills a terminal.
class TextHost final : public ItemHost {
public:
    /// Both outlive the host, and are of the same terminal.
    TextHost(Terminal& terminal, OutputStream& output, TerminalAbilities abilities);

    /// Something else was on the screen, or it changed its size.
    void redraw();

private:
    void display(Sample) override;

    Terminal& terminal_;
    OutputStream& output_;
    TerminalShape shape_;
    TextFigures figures_;
    TextFrame frame_;
    ScreenUpdate update_;
};

}  // namespace vantor
