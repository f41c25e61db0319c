#include "Platform/Simulated/SimulatedGraphics.h"

namespace vantor::simulated {

std::vector<Screen> SimulatedDisplays::screens() {
    std::vector<Screen> listed;
    for (const auto& [display, screen] : screens_) {
        listed.push_back(screen);
        if (const RegistryObject object = registry_.objectWithID(display))
            listed.back().location = object->path();
    }
    return listed;
}

}  // namespace vantor::simulated
