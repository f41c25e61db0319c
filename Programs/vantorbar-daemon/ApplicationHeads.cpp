#include "Programs/vantorbar-daemon/ApplicationHeads.h"

#include <algorithm>

#include "Platform/Linux/ProcessNames.h"

namespace vantor {
namespace {

constexpr std::int32_t kInit = 1;
constexpr std::string_view kUserManager = "systemd";

bool standsForOthers(const ProcessReading& process) noexcept {
    return process.id != kInit && !process.isKernelThread && process.name() != kUserManager &&
           !isShell(process.name());
}

/// A shell that runs a command of the process above it, which is still what the user started.
bool isPassedThrough(const ProcessReading& process) noexcept {
    return isShell(process.name()) && process.id != process.session;
}

bool leadsOn(const ProcessReading& process) noexcept {
    return standsForOthers(process) || isPassedThrough(process);
}

}  // namespace

void ApplicationHeads::setProcesses(std::span<const ProcessReading> processes) {
    processes_ = processes;
    applications_.assign(processes.size(), std::nullopt);
}

std::size_t ApplicationHeads::headOf(std::size_t place) {
    std::size_t head = place;
    // Each step goes to another process; the bound is for readings that contradict themselves,
    // as processes came and went while they were taken.
    for (std::size_t steps = 0; steps < processes_.size(); ++steps) {
        const auto parent = parentOf(place);
        if (!parent || !leadsOn(processes_[*parent]) || !isSameApplication(place, *parent))
            break;
        place = *parent;
        if (standsForOthers(processes_[place]))
            head = place;
    }
    return head;
}

/// Nothing where the parent isn't to be seen, or a younger process has got its number.
std::optional<std::size_t> ApplicationHeads::parentOf(std::size_t place) const noexcept {
    const ProcessReading& child = processes_[place];
    const auto found = std::ranges::lower_bound(processes_, child.parent, {}, &ProcessReading::id);
    const bool isParent = found != processes_.end() && found->id == child.parent &&
                          found->startTicks <= child.startTicks;
    return isParent ? std::optional(static_cast<std::size_t>(found - processes_.begin()))
                    : std::nullopt;
}

bool ApplicationHeads::isSameApplication(std::size_t one, std::size_t other) {
    const ApplicationID application = this->application(one);
    if (application != this->application(other))
        return false;
    const std::int32_t session = processes_[one].session;
    return application != ApplicationID::none ||
           (session != 0 && session == processes_[other].session);
}

ApplicationID ApplicationHeads::application(std::size_t place) {
    std::optional<ApplicationID>& known = applications_[place];
    if (!known)
        known = source_.application(processes_[place]);
    return *known;
}

}  // namespace vantor
