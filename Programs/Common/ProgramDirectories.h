#pragma once

#include "Platform/Linux/LinuxDirectories.h"

namespace vantor {

/// Where the files of the user who runs this program are, and the program's own.
DirectorySources programDirectories();

}  // namespace vantor
