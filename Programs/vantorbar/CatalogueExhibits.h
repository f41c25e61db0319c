#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Shared/Collectors/StatSamples.h"
#include "Shared/VTRMenuItem.h"

namespace vantor {

/// A row to show, and what it is called.
struct Exhibit {
    std::string name;
    std::shared_ptr<VTRMenuItem> item;
};

/// Rows of one kind.
struct ExhibitFamily {
    std::string title;
    std::vector<Exhibit> exhibits;
};

/// Whole rings of made-up figures: a machine's day, with a gap, the same at each call.
class CatalogueSamples final : public StatSamples {
public:
    enum class Kind { shares, loads };
    explicit CatalogueSamples(Kind kind);
    statsample sampleAtIndex(std::size_t index, StorageType type) const noexcept override;
    statsample sampleWithIdentifier(double sampleID, StorageType type) const noexcept override;
    double idForInterval(int index) const noexcept override;
    std::size_t sampleValueCount() const noexcept override { return ring_.valueCount(); }
    bool temporary() const noexcept override { return false; }

private:
    SampleRing ring_;
};

/// Every builder's row and every control, filled in, in the theme of the current context.
/// `shares` and `loads` outlive the rows.
std::vector<ExhibitFamily> catalogueExhibits(const StatSamples& shares, const StatSamples& loads);

}  // namespace vantor
