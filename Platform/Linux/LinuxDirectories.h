#pragma once

#include <functional>

#include "Platform/Directories.h"
#include "Platform/Linux/Environment.h"

namespace vantor {

/// What the places are derived from.
struct DirectorySources {
    Environment environment;
    /// The home that the user database names; asked only where the environment names none.
    std::function<std::optional<std::filesystem::path>()> accountHome;
    /// The program's own file or, in a plug-in, the plug-in's; nothing where the system doesn't
    /// tell.
    std::filesystem::path program;
    /// Where the resources are as long as the program isn't installed.
    std::filesystem::path uninstalledResources;

    static DirectorySources ofThisProcess(std::filesystem::path uninstalledResources);
};

/// The base directories of the desktop; relative ones count as unset. All are found out once.
class LinuxDirectories final : public Directories {
public:
    explicit LinuxDirectories(const DirectorySources& sources);
    std::optional<std::filesystem::path> applicationSupport() const override;
    std::optional<std::filesystem::path> logs() const override;
    std::optional<std::filesystem::path> preferences() const override;
    std::vector<std::filesystem::path> formerPreferences() const override;
    std::filesystem::path resources() const override;
    std::filesystem::path systemRoot() const override;

private:
    std::optional<std::filesystem::path> home_, data_, state_, configuration_;
    std::filesystem::path resources_;
};

}  // namespace vantor
