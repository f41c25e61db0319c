#pragma once

#include <string_view>

#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"
#include "Platform/Witness.h"

namespace vantor::simulated {

/// Hears everything that the world around a simulated program could notice. Every operation does
/// nothing here, so that a listener takes only what it wants.
class Journal : public Witness {
public:
    virtual void length(double) {}
    virtual void repaint() {}
    /// `center` is "local" or "distributed".
    virtual void notification(std::string_view /*center*/, std::string_view /*name*/,
                              const NotificationInfo&) {}
    virtual void systemLog(std::string_view) {}
    virtual void launch(std::string_view /*path*/) {}
    /// The program sent this to the daemon, whether or not anybody was there.
    virtual void daemon(std::string_view /*call*/, const PropertyValue::Array& /*arguments*/) {}

    void measures(std::string_view, std::optional<int>) override {}
    void updated(std::string_view, int) override {}
    void committed(std::string_view, std::size_t, std::size_t) override {}
    void extraLoaded(std::string_view) override {}
    void extraUnloaded(std::string_view) override {}
    void logged(std::string_view) override {}
};

}  // namespace vantor::simulated
