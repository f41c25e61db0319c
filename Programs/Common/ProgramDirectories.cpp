#include "Programs/Common/ProgramDirectories.h"

namespace vantor {

DirectorySources programDirectories() {
    return DirectorySources::ofThisProcess(VANTOR_RESOURCES_DIR);
}

}  // namespace vantor
