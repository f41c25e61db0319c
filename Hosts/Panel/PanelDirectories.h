#pragma once

#include "Platform/Linux/LinuxDirectories.h"

namespace vantor {

/// Where the files of the user whose panel this is are, and the program's own: those beside the
/// shared object of the panels, whatever program has loaded it.
DirectorySources panelDirectories();

}  // namespace vantor
