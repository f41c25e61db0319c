#include "Hosts/Panel/PanelDirectories.h"

namespace vantor {

DirectorySources panelDirectories() {
    return DirectorySources::ofThisProcess(VANTOR_RESOURCES_DIR);
}

}  // namespace vantor
