#pragma once

#include <string>
#include <string_view>

#include "Shared/Graphs/HistoryGraph.h"

namespace vantor::inline VANTOR_MODULE {

/// What the processors did: user in blue, and what the system adds to it in red.
class CPUGraph final : public HistoryGraph {
public:
    explicit CPUGraph(const Rect& frame);
    std::string_view className() const override { return "CPUGraph"; }

protected:
    void draw(Painting::Context& context) override;
    std::string valueText(std::size_t column) const override;
};

/// How many wanted a processor: the shortest mean as an area; at the two finest scales the longer
/// ones as lines. The scale follows the data in steps of 5.
class LoadAverageGraph final : public HistoryGraph {
public:
    explicit LoadAverageGraph(const Rect& frame);
    std::string_view className() const override { return "LoadAverageGraph"; }

protected:
    void draw(Painting::Context& context) override;
    bool calculatePeak() override;
    std::string valueText(std::size_t column) const override;
};

}  // namespace vantor::inline VANTOR_MODULE
