#pragma once

#include <cstddef>

#include "Foundation/WeakHandle.h"
#include "Shared/Collectors/SampleRing.h"
#include "Shared/Collectors/StorageType.h"

namespace vantor::inline VANTOR_MODULE {

/// What painters read: a collector, or one of the things that it measures.
/// Thread: main queue only.
class StatSamples {
public:
    StatSamples() = default;
    /// A copy is another thing: nobody looks at it yet.
    StatSamples(const StatSamples&) : StatSamples() {}
    StatSamples& operator=(const StatSamples&) { return *this; }
    virtual ~StatSamples() = default;
    /// `index` is an age, 0 the newest, below SampleRing::kSlots.
    virtual statsample sampleAtIndex(std::size_t index, StorageType type) const noexcept = 0;
    /// A gap of that ID where there is none.
    virtual statsample sampleWithIdentifier(double sampleID, StorageType type) const noexcept = 0;
    /// The ID of the newest sample at a scale.
    virtual double idForInterval(int index) const noexcept = 0;
    virtual std::size_t sampleValueCount() const noexcept = 0;
    /// Made only to hold loaded history; not a live thing.
    virtual bool temporary() const noexcept = 0;

    /// For those who keep looking at samples that may go.
    WeakHandle<const StatSamples> handle() const noexcept { return self_.handle(); }

private:
    WeakSource<const StatSamples> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
