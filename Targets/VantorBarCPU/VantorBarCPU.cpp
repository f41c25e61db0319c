#include "Targets/VantorBarCPU/VantorBarCPU.h"

#include "Platform/Workspace.h"
#include "Targets/VantorBarCPU/Classes/VTRCPUModule.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kOpenDelaySeconds = 0.1;

}  // namespace

void VantorBarCPU::loadModules() {
    mutableModules().push_back(std::make_unique<VTRCPUModule>(*this));
}

void VantorBarCPU::openApplication(std::string_view name) {
    ports().mainQueue.after(kOpenDelaySeconds, [&workspace = ports().workspace, name] {
        workspace.launchApplication(name);
    });
    cancelTracking();
}

}  // namespace vantor::inline VANTOR_MODULE
