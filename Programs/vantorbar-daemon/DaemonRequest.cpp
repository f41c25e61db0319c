#include "Programs/vantorbar-daemon/DaemonRequest.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace vantor {
namespace {

constexpr DaemonMethod kMethods[]{
    {DaemonOperation::version, "Version", ""},
    {DaemonOperation::enableHierachy, "EnableHierachy", ""},
    {DaemonOperation::disableHierachy, "DisableHierachy", ""},
    {DaemonOperation::startRequestWithKey, "StartRequestWithKey", "x"},
    {DaemonOperation::stopRequestWithKey, "StopRequestWithKey", "x"},
    {DaemonOperation::smartTemps, "SmartTemps", ""},
    {DaemonOperation::startSMARTStatus, "StartSMARTStatus", ""},
    {DaemonOperation::stopSMARTStatus, "StopSMARTStatus", ""},
    {DaemonOperation::startSMARTTemps, "StartSMARTTemps", ""},
    {DaemonOperation::stopSMARTTemps, "StopSMARTTemps", ""},
    {DaemonOperation::refreshDHCP, "RefreshDHCP", "s"},
    {DaemonOperation::toggleAirPortPower, "ToggleAirPortPower", ""},
    {DaemonOperation::setNetworkSet, "SetNetworkSet", "s"},
    {DaemonOperation::setFanSet, "SetFanSet", "av"},
};

}  // namespace

const DaemonMethod* daemonMethodNamed(std::string_view name) noexcept {
    const auto found = std::ranges::find(kMethods, name, &DaemonMethod::name);
    return found == std::end(kMethods) ? nullptr : &*found;
}

const DaemonMethod& daemonMethod(DaemonOperation operation) noexcept {
    return kMethods[static_cast<std::size_t>(operation)];  // in the enumeration's order
}

}  // namespace vantor
