#include "Shared/KOLVersions.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedFacilities.h"

namespace vantor {
namespace {

TEST(KOLVersionsTest, FlagsFollowMajorAndMinor) {
    struct Case {
        SystemVersion version;
        bool mavericks, yosemite, elCapitan;
    };
    const Case cases[] = {{{10, 8, 5}, false, false, false}, {{10, 9, 0}, true, false, false},
                          {{10, 10, 0}, true, true, false},  {{10, 11, 0}, true, true, true},
                          {{11, 0, 0}, true, true, true},    {{9, 12, 0}, false, false, false}};
    for (const Case& expected : cases) {
        simulated::SimulatedMachineIdentity identity;
        identity.setSystemVersion(expected.version);
        const KOLVersions versions(identity);
        EXPECT_EQ(versions.isMavericks(), expected.mavericks) << expected.version.minor;
        EXPECT_EQ(versions.isYosemite(), expected.yosemite) << expected.version.minor;
        EXPECT_EQ(versions.isElCapitan(), expected.elCapitan) << expected.version.minor;
    }
}

}  // namespace
}  // namespace vantor
