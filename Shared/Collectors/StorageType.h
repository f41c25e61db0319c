#pragma once

#include <array>
#include <cstddef>

namespace vantor::inline VANTOR_MODULE {

/// The time scales that are kept in memory.
enum class StorageType { now = 0, hour = 1, day = 2, week = 3 };

inline constexpr std::size_t kStorageCount = 4;

/// Where a collector's values live: in its own rings, or in its items, with only IDs and times
/// in its own.
enum class StorageKind { collector = 1, items = 2 };

/// Which ring of four a type means; any other number means the one of now.
constexpr std::size_t storageIndex(int type) noexcept {
    return type >= 1 && type <= 3 ? static_cast<std::size_t>(type) : 0;
}
constexpr std::size_t storageIndex(StorageType type) noexcept {
    return storageIndex(static_cast<int>(type));
}

/// One row of a collector's schedule.
struct sampleindexconfig {
    double sampleID = 1;  // of the latest sample at this scale
    double time = 0;      // of the latest sample at this scale
    double nextTime = 0;  // when the next one falls due; 0 when unscheduled
    double interval = 0;  // seconds
};

inline constexpr std::size_t kScaleCount = 9;
inline constexpr int kMaximumSampleIndex = 4;          // in-memory work covers indexes below it
inline constexpr int kMaximumSampleIndexWithLong = 9;  // the schedule walks indexes below it

/// Seconds between samples: now, hour, day, week, month, three and six months, year, long term.
inline constexpr std::array<double, kScaleCount> kScaleIntervals{1,    6,     144,   1008, 4320,
                                                                 12960, 25920, 52560, 300};

inline constexpr int kDayIndex = 2;
inline constexpr int kLongTermIndex = 8;

}  // namespace vantor::inline VANTOR_MODULE
