#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantor::inline VANTOR_MODULE {

/// A sample on its way between a collector, its rings and its history: figures by key.
/// Shape:  at most kCapacity figures, kept in place, so that a roll-up doesn't allocate; with
///         storage type 2 also one record for each item.
/// Units:  those of the collector; "time" is seconds since 1970, "empty" is non-zero for a gap.
/// Errors: a key past the capacity is our own mistake. Keys are texts that outlive the sample.
class SampleFields {
public:
    static constexpr std::size_t kCapacity = 24;

    /// Adds the figure, or replaces the one under that key.
    void set(std::string_view key, double value) noexcept;
    std::optional<double> value(std::string_view key) const noexcept;

    std::string uuid;                 // which item the figures are of
    std::vector<SampleFields> items;  // storage type 2: the figures of each item

private:
    struct Field {
        std::string_view key;
        double value = 0;
    };
    std::array<Field, kCapacity> fields_;
    std::size_t count_ = 0;
};

inline void SampleFields::set(std::string_view key, double value) noexcept {
    for (std::size_t field = 0; field < count_; ++field)
        if (fields_[field].key == key) {
            fields_[field].value = value;
            return;
        }
    assert(count_ < kCapacity);
    if (count_ < kCapacity)
        fields_[count_++] = {key, value};
}

inline std::optional<double> SampleFields::value(std::string_view key) const noexcept {
    for (std::size_t field = 0; field < count_; ++field)
        if (fields_[field].key == key)
            return fields_[field].value;
    return std::nullopt;
}

}  // namespace vantor::inline VANTOR_MODULE
