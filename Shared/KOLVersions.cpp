#include "Shared/KOLVersions.h"

#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {

KOLVersions::KOLVersions(const MachineIdentity& identity)
    : version_(identity.systemVersion()), isMavericks_(mavericks()), isYosemite_(yosemite()),
      isElCapitan_(elCapitan()) {}

KOLVersions& KOLVersions::sharedVersions() { return ProcessContext::current().versions(); }

/// A later major counts as later, whatever its minor.
bool KOLVersions::isTenOrLater(int minor) const noexcept {
    return version_.major == 10 ? version_.minor >= minor : version_.major > 10;
}

}  // namespace vantor::inline VANTOR_MODULE
