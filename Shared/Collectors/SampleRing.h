#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

/// One stored sample, as readers get it.
struct statsample {
    double sampleID = 0;  // grows by one a slot within its scale; 0 was never filled
    double time = 0;      // seconds since 1970
    double timeActual = 0;
    std::int32_t empty = 0;  // non-zero stands for a gap
    std::int32_t index = 0;
    std::span<const double> values;  // the ring's own, good until the next push
};

/// The newest samples of one time scale, read by age: position 0 is the newest.
/// Shape:  kSlots slots of `valueCount` doubles, allocated here, once; sampling never allocates.
/// Units:  `time` is seconds since 1970; what the values mean is their collector's affair.
/// Errors: none. A cleared slot is empty with ID 0. A position must be below kSlots.
/// Thread: main queue only, so there is no lock.
class SampleRing {
public:
    static constexpr std::size_t kSlots = 602;  // also what one history table retains

    /// All slots cleared, with time 0.
    explicit SampleRing(std::size_t valueCount);

    std::size_t valueCount() const noexcept { return stride_ - kHeaderDoubles; }
    statsample sampleAtIndex(std::size_t position) const noexcept;
    /// The newest position that has this ID.
    std::optional<std::size_t> positionOfIdentifier(double sampleID) const noexcept;

    double sampleID(std::size_t position) const noexcept { return record(position)[kID]; }
    double time(std::size_t position) const noexcept { return record(position)[kTime]; }
    bool empty(std::size_t position) const noexcept { return record(position)[kEmpty] != 0; }
    std::span<const double> values(std::size_t position) const noexcept;

    /// Moves every sample one place back; the oldest falls out. The newest slot keeps its old
    /// contents until it is overwritten, so a value left out repeats the figure before it.
    void pushSamples() noexcept;

    void setSampleID(std::size_t position, double id) noexcept { record(position)[kID] = id; }
    void setTime(std::size_t position, double time) noexcept { record(position)[kTime] = time; }
    void setEmpty(std::size_t position, std::int32_t empty) noexcept;
    std::span<double> mutableValues(std::size_t position) noexcept;

    enum class Times { keep, clear };
    /// Every slot empty, with ID 0 and values 0.
    void clear(Times times) noexcept;

private:
    // One record a slot, header and values side by side, so that a push touches two neighbouring
    // records and no more: the slots stand in a circle and `newest_` moves.
    enum Field : std::size_t { kID, kTime, kTimeActual, kEmpty, kHeaderDoubles };

    std::size_t offset(std::size_t position) const noexcept {
        const std::size_t slot = newest_ + position;
        return (slot < kSlots ? slot : slot - kSlots) * stride_;
    }
    double* record(std::size_t position) noexcept { return &records_[offset(position)]; }
    const double* record(std::size_t position) const noexcept {
        return &records_[offset(position)];
    }

    std::size_t stride_;
    std::size_t newest_ = 0;
    std::vector<double> records_;
};

/// Moves the samples of a ring one place back.
inline void PushSamples(SampleRing& ring) noexcept { ring.pushSamples(); }

}  // namespace vantor::inline VANTOR_MODULE
