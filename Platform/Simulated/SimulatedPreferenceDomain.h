#pragma once

#include "Platform/PreferenceDomain.h"

namespace vantor::simulated {

/// A domain in memory, to which the program and the script both write.
class SimulatedPreferenceDomain final : public PreferenceDomain {
public:
    /// Writing throws from now on.
    void setFailing(bool failing) noexcept { failing_ = failing; }
    int reads() const noexcept { return reads_; }
    int synchronisations() const noexcept { return synchronisations_; }

    PropertyValue read(std::string_view key) override;
    void write(std::string_view key, const PropertyValue& value) override;
    void synchronise() override { ++synchronisations_; }
    PropertyValue::Dictionary readAll() override { return values_; }

private:
    PropertyValue::Dictionary values_;
    bool failing_ = false;
    int reads_ = 0, synchronisations_ = 0;
};

}  // namespace vantor::simulated
