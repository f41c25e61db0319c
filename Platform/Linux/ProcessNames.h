#pragma once

#include <string>
#include <string_view>

namespace vantor {

/// What is known of a process's name. Texts that can't be read are empty.
struct NameSources {
    std::string_view kernelName;  // what the process is called, cut at 15 bytes
    std::string_view cmdline;     // arguments, each with a zero byte behind it
    std::string_view exe;         // path of the program's file
};

/// The name that a person knows: whole where the kernel's is cut, and the script's or the
/// module's in place of its interpreter's. Empty where nothing is known.
std::string_view knownName(const NameSources& sources) noexcept;

/// Whether there may be more of a name than the kernel keeps, or it keeps none.
bool isCut(std::string_view kernelName) noexcept;

/// Whether programs of that name are the user's own way to start others.
bool isShell(std::string_view kernelName) noexcept;

/// `name` as UTF-8 that can be shown in a line: U+FFFD stands in for each byte that is no letter,
/// for controls, and for what turns the direction of the text around it. At most 128 bytes.
std::string readable(std::string_view name);

}  // namespace vantor
