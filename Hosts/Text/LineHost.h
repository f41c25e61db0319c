#pragma once

#include <cstdint>
#include <string>

#include "Hosts/ItemHost.h"
#include "Hosts/Text/OutputStream.h"
#include "Hosts/Text/TextFigures.h"
#include "Hosts/Text/TextLine.h"

namespace vantor {

/// Writes the item's figures as a line for each sample: JSON for programs, plain text for
/// terminals that can do no more.
class LineHost final : public ItemHost {
public:
    enum class Format : std::uint8_t { json, plain };

    /// The stream outlives the host.
    LineHost(OutputStream& output, Format format) : output_(output), format_(format) {}

private:
    void display(Sample sample) override;

    OutputStream& output_;
    Format format_;
    TextFigures figures_;
    TextLine summary_;
    std::string line_;
};

}  // namespace vantor
