#pragma once

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

/// Whoever is told the daemon's responses to a request. Main queue.
class VTRProcessesCallBackProtocol {
public:
    virtual ~VTRProcessesCallBackProtocol() = default;
    /// "type" is the request's key as text. For the busiest processes, "processes" is an array of
    /// dictionaries in the order of display: "name", and "c", percent of one core, as anything
    /// that has a `floatValue`. Nobody has checked more than that.
    virtual void processesUpdated(const PropertyValue::Dictionary& response) = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
