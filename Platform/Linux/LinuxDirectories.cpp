#include "Platform/Linux/LinuxDirectories.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "Foundation/OwnFile.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

std::optional<fs::path> absolute(std::optional<std::string> value) {
    if (!value || !value->starts_with('/'))
        return std::nullopt;
    return fs::path(*std::move(value));
}

std::optional<fs::path> below(const std::optional<fs::path>& folder, const fs::path& name) {
    return folder ? std::optional(*folder / name) : std::nullopt;
}

/// An entry larger than this isn't a person's.
constexpr std::size_t kLargestEntryBytes = 1 << 20;

std::optional<fs::path> homeOfAccount() {
    passwd entry{};
    passwd* found = nullptr;
    for (std::vector<char> text(1024); text.size() <= kLargestEntryBytes;
         text.resize(text.size() * 2)) {
        const int error = getpwuid_r(getuid(), &entry, text.data(), text.size(), &found);
        if (error == ERANGE)
            continue;
        return error == 0 && found != nullptr ? absolute(found->pw_dir) : std::nullopt;
    }
    return std::nullopt;
}

bool holdsPrograms(const fs::path& folder) {
    const std::string name = folder.filename();
    return name == "bin" || name.starts_with("lib");  // lib64 and libexec are as good
}

/// In share/vantor-bar of the prefix: what has the bin or the lib that the program is below.
fs::path resourcesOf(const fs::path& program, const fs::path& otherwise) {
    for (fs::path folder = program.parent_path(); folder.has_relative_path();
         folder = folder.parent_path()) {
        const fs::path resources = folder.parent_path() / "share" / "vantor-bar";
        std::error_code unreadable;  // as good as missing
        if (holdsPrograms(folder) && fs::is_directory(resources, unreadable))
            return resources;
    }
    return otherwise;
}

}  // namespace

DirectorySources DirectorySources::ofThisProcess(fs::path uninstalledResources) {
    return {processEnvironment(), homeOfAccount, ownFile(), std::move(uninstalledResources)};
}

LinuxDirectories::LinuxDirectories(const DirectorySources& sources)
    : home_(absolute(sources.environment("HOME"))),
      data_(absolute(sources.environment("XDG_DATA_HOME"))),
      state_(absolute(sources.environment("XDG_STATE_HOME"))),
      configuration_(absolute(sources.environment("XDG_CONFIG_HOME"))),
      resources_(resourcesOf(sources.program, sources.uninstalledResources)) {
    if (!home_)
        home_ = sources.accountHome();
    if (!data_)
        data_ = below(home_, ".local/share");
    if (!state_)
        state_ = below(home_, ".local/state");
    if (!configuration_)
        configuration_ = below(home_, ".config");
}

std::optional<fs::path> LinuxDirectories::applicationSupport() const { return data_; }
std::optional<fs::path> LinuxDirectories::logs() const { return below(state_, "Vantor Bar/Logs"); }
std::optional<fs::path> LinuxDirectories::preferences() const {
    return below(configuration_, "Vantor Bar");
}
std::vector<fs::path> LinuxDirectories::formerPreferences() const {
    std::vector<fs::path> folders;
    for (const auto& folder : {below(home_, "Library/Preferences"), preferences()})
        if (folder)
            folders.push_back(*folder);
    return folders;
}
fs::path LinuxDirectories::resources() const { return resources_; }
fs::path LinuxDirectories::systemRoot() const { return "/"; }

}  // namespace vantor
