#pragma once

#include <filesystem>

#include "Platform/Simulated/Scenario.h"

namespace vantor {

/// Spoils a file in one of the ways in which disks and people do. "text" and "zeros" keep its
/// size, "truncated" keeps the first half of its bytes.
/// False where there is no such file or it can't be written.
bool spoilFile(const std::filesystem::path& file, simulated::Corruption::Kind kind);

}  // namespace vantor
