#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/Environment.h"

namespace vantor {

/// What a desktop file says about starting its application. The values are unescaped.
struct DesktopEntry {
    std::string exec{};
    std::string tryExec{};  // "" where it isn't given
    std::string icon{};     // a name, or a file's path; "" likewise
    bool isHidden = false;  // stands for an application that was removed
    bool needsTerminal = false;
};

/// Nothing where the text describes no application.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

/// The words of an Exec value, without quotes and without the codes that stand for files and
/// names. Nothing where it can't be read.
std::optional<std::vector<std::string>> argumentsOf(std::string_view exec);

/// The folders with desktop files, those that win first.
std::vector<std::filesystem::path>
applicationFolders(const std::optional<std::filesystem::path>& dataHome,
                   const Environment& environment);

/// The entry of that file name in the first of `folders` that has one, whatever it says.
std::optional<DesktopEntry> findDesktopEntry(std::string_view id,
                                             std::span<const std::filesystem::path> folders);

/// The executable file that `name` stands for: a path, or a name to look up in `searchPath`,
/// which is written as $PATH is.
std::optional<std::filesystem::path> findProgram(std::string_view name,
                                                 std::string_view searchPath);

/// What starts the application, its program's file first. Nothing where it was removed, or where
/// what it needs isn't installed.
std::optional<std::vector<std::string>> commandOf(const DesktopEntry& entry,
                                                  std::string_view searchPath);

}  // namespace vantor
