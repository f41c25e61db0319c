#include "Platform/Simulated/SimulatedPreferenceDomain.h"

#include <stdexcept>

namespace vantor::simulated {

PropertyValue SimulatedPreferenceDomain::read(std::string_view key) {
    ++reads_;
    const auto value = values_.find(key);
    return value == values_.end() ? PropertyValue{} : value->second;
}

void SimulatedPreferenceDomain::write(std::string_view key, const PropertyValue& value) {
    if (failing_)
        throw std::runtime_error("the domain can't be written");
    if (value.isNothing())
        values_.erase(std::string(key));
    else
        values_.insert_or_assign(std::string(key), value);
}

}  // namespace vantor::simulated
