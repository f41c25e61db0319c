#pragma once

#include <filesystem>

namespace vantor {

/// The program or the shared object that this code is part of: what belongs to it lies beside it.
/// Empty where the system doesn't tell.
std::filesystem::path ownFile();

}  // namespace vantor
