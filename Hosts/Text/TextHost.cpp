#include "Hosts/Text/TextHost.h"

#include "Hosts/Text/FigureReader.h"

namespace vantor {

TextHost::TextHost(Terminal& terminal, OutputStream& output, TerminalAbilities abilities)
    : terminal_(terminal), output_(output) {
    shape_.abilities = abilities;
    redraw();
}

void TextHost::redraw() {
    const TerminalSize size = terminal_.size();
    shape_.columns = size.columns;
    shape_.rows = size.rows;
    update_.forget();
    setNeedsDisplay();
}

void TextHost::display(Sample) {
    // A terminal that doesn't keep up gets the next picture, not every one.
    if (!output_.isReady())
        return;
    readFigures(figures_, Histories::read);
    renderInto(frame_, figures_, shape_);
    output_.write(update_.to(frame_));
}

}  // namespace vantor
