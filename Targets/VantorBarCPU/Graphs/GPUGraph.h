#pragma once

#include <string>
#include <string_view>

#include "Shared/Graphs/HistoryGraph.h"

namespace vantor::inline VANTOR_MODULE {

/// The share of a graphics processor's memory that was in use. Its source is the processor's item;
/// the newest sample is the shared collector's, which counts for all items.
class GPUMemoryGraph final : public HistoryGraph {
public:
    explicit GPUMemoryGraph(const Rect& frame);
    std::string_view className() const override { return "GPUMemoryGraph"; }

protected:
    void draw(Painting::Context& context) override;
    std::string valueText(std::size_t column) const override;
};

/// How busy a graphics processor was, likewise.
class GPUProcessorGraph final : public HistoryGraph {
public:
    explicit GPUProcessorGraph(const Rect& frame);
    std::string_view className() const override { return "GPUProcessorGraph"; }

protected:
    void draw(Painting::Context& context) override;
    std::string valueText(std::size_t column) const override;
};

}  // namespace vantor::inline VANTOR_MODULE
