#include "Platform/Linux/LinuxDirectories.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "Foundation/OwnModule.h"

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

fs::path resourcesBeside(const fs::path& program, const fs::path& otherwise) {
    const fs::path installed =
        (program.parent_path() / ".." / "share" / "vantor-bar").lexically_normal();
    std::error_code unreadable;  // as good as missing
    return !program.empty() && fs::is_directory(installed, unreadable) ? installed : otherwise;
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
      resources_(resourcesBeside(sources.program, sources.uninstalledResources)) {
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
