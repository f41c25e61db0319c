#pragma once

#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

// What the statistics of a graphics processor's driver mean: dictionaries in, figures out.

/// Units:  bytes, and percent.
struct GPUUsage {
    double used = 0, free = 0;
    double load = -1;  // below 0 it isn't known
};

/// What the meaning of the statistics depends on.
struct GPUTraits {
    double totalBytes = 0;  // 0 when it isn't known
    bool isIntegrated = false;
    bool tellsMemoryInUse = false;  // the system is one whose drivers tell it directly
};

/// One sample; -1 stands for what isn't known.
struct GPUSample {
    double processor = -1;  // percent
    double memory = -1;     // the share in use, 0 to 1
};

/// Null is no statistics at all.
GPUUsage usageInStatistics(const PropertyValue::Dictionary* statistics, const GPUTraits& traits);

/// The sample of what is awake. Where only the free memory is known, the rest is in use.
GPUSample sampleOfUsage(GPUUsage usage, double totalBytes, bool hasProcessorUsage) noexcept;

/// All of a device's memory by what its properties say, in bytes; 0 where they don't.
double totalMemoryInProperties(const PropertyValue::Dictionary& properties);

/// The entry under `key`, or nothing.
const PropertyValue& propertyInDictionary(const PropertyValue::Dictionary& dictionary,
                                          std::string_view key) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
