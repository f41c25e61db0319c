#pragma once

#include "Platform/MachineIdentity.h"

namespace vantor::inline VANTOR_MODULE {

/// The system's version as the flags that drawing code tests. Computed once.
class KOLVersions {
public:
    explicit KOLVersions(const MachineIdentity& identity);

    static KOLVersions& sharedVersions();

    bool isMavericks() const noexcept { return isMavericks_; }
    bool isYosemite() const noexcept { return isYosemite_; }
    bool isElCapitan() const noexcept { return isElCapitan_; }
    int major() const noexcept { return version_.major; }
    int minor() const noexcept { return version_.minor; }
    int bugfix() const noexcept { return version_.bugfix; }

    /// What the flags are computed by.
    bool mavericks() const noexcept { return isTenOrLater(9); }
    bool yosemite() const noexcept { return isTenOrLater(10); }
    bool elCapitan() const noexcept { return isTenOrLater(11); }

private:
    bool isTenOrLater(int minor) const noexcept;

    SystemVersion version_;
    bool isMavericks_, isYosemite_, isElCapitan_;
};

}  // namespace vantor::inline VANTOR_MODULE
