#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

/// A small file of the kernel's, such as one attribute in sysfs, without the blanks and line ends
/// around it. Nothing where it can't be read. For start-up: it opens, reads and allocates.
std::optional<std::string> trimmedTextOf(const std::filesystem::path& path);

/// Without the blanks and line ends around it.
std::string_view trimmedText(std::string_view text) noexcept;

/// The value of the first line "key : value" of a text of /proc, or nothing.
std::optional<std::string_view> valueOfLine(std::string_view text, std::string_view key) noexcept;

}  // namespace vantor
