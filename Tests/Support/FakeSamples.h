#pragma once

#include <algorithm>
#include <initializer_list>

#include "Shared/Collectors/StatSamples.h"

namespace vantor::test {

/// A collector that holds what the test puts in; empty otherwise.
class FakeSamples final : public StatSamples {
public:
    explicit FakeSamples(std::size_t valueCount = 3) : ring(valueCount) {}
    FakeSamples(std::initializer_list<double> values) : ring(values.size()) { add(values); }

    /// A newer sample.
    void add(std::initializer_list<double> values) {
        PushSamples(ring);
        ring.setSampleID(0, ++lastID);
        ring.setEmpty(0, 0);
        std::copy(values.begin(), values.end(), ring.mutableValues(0).begin());
    }

    /// A newer one that is a gap.
    void addGap() {
        add({});
        ring.setEmpty(0, 1);
    }

    statsample sampleAtIndex(std::size_t index, StorageType) const noexcept override {
        return ring.sampleAtIndex(index);
    }
    statsample sampleWithIdentifier(double sampleID, StorageType) const noexcept override {
        if (const auto position = ring.positionOfIdentifier(sampleID))
            return ring.sampleAtIndex(*position);
        return {.sampleID = sampleID, .empty = 1, .values = {}};
    }
    double idForInterval(int) const noexcept override { return lastID; }
    std::size_t sampleValueCount() const noexcept override { return ring.valueCount(); }
    bool temporary() const noexcept override { return isTemporary; }

    SampleRing ring;
    double lastID = 0;
    bool isTemporary = false;
};

}  // namespace vantor::test
