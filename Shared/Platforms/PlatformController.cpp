#include "Shared/Platforms/PlatformController.h"

#include <algorithm>

#include "Platform/MachineIdentity.h"
#include "Platform/Registry.h"
#include "Shared/Platforms/PlatformMac.h"
#include "Shared/Platforms/PlatformModel.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kFauxService = "FakeSMC";
constexpr std::string_view kFauxClass = "FauxMac";

char lowerCase(char letter) noexcept {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::unique_ptr<PlatformMac> platformOf(const Ports& ports, const PlatformModel* model) {
    if (model != nullptr && model->base == PlatformModel::Base::macPro)
        return std::make_unique<PlatformMacPro>(ports, model);
    if (model != nullptr && model->base == PlatformModel::Base::iMac)
        return std::make_unique<PlatformiMac>(ports, model);
    return std::make_unique<PlatformMac>(ports, model);
}

}  // namespace

PlatformController::PlatformController(const Ports& ports)
    : faux_(!ports.registry.objectsMatching({{std::string(kMatchServiceClass), kFauxService}})
                 .empty()),
      curentPlatform_(loadCurrentPlatform(ports)) {}

PlatformController::~PlatformController() = default;

std::unique_ptr<PlatformMac> PlatformController::loadCurrentPlatform(const Ports& ports) const {
    const std::string name =
        faux_ ? std::string(kFauxClass)
              : platformClassName(ports.machineIdentity.modelIdentifier().value_or(""));
    if (name == kFauxClass)
        return std::make_unique<FauxMac>(ports);
    return platformOf(ports, platformModelNamed(name));
}

PlatformMac& PlatformController::currentPlatform() {
    return ProcessContext::current().platformController().platform();
}

PlatformController* PlatformController::sharedPlatformController() {
    return ProcessContext::current().existingPlatformController();
}

std::optional<std::string> PlatformController::modelIdentifier() {
    return ProcessContext::current().ports().machineIdentity.modelIdentifier();
}

bool PlatformController::isLaptop() { return isLaptopModel(modelIdentifier()); }

bool isLaptopModel(const std::optional<std::string>& modelIdentifier) {
    std::string identifier = modelIdentifier.value_or("");
    std::ranges::transform(identifier, identifier.begin(), lowerCase);
    return identifier.starts_with("macbook");
}

}  // namespace vantor::inline VANTOR_MODULE
