#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vantor {

/// A small file of the kernel's, such as one attribute in sysfs, without the blanks and line ends
/// around it. Nothing where it can't be read. For start-up: it opens, reads and allocates.
std::optional<std::string> trimmedTextOf(const std::filesystem::path& path);

}  // namespace vantor
