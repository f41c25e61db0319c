#include "Hosts/Text/LineHost.h"

#include "Hosts/Text/FigureReader.h"
#include "Hosts/Text/SampleLine.h"
#include "Hosts/Text/TextFrame.h"

namespace vantor {

void LineHost::display(Sample sample) {
    if (sample != Sample::isNew)
        return;
    readFigures(figures_, Histories::leave);
    if (format_ == Format::json) {
        writeSampleLine(line_, figures_);
    } else {
        renderSummary(summary_, figures_);
        line_ = summary_.text();
        line_ += '\n';
    }
    output_.write(line_);
}

}  // namespace vantor
