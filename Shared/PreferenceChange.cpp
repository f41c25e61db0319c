#include "Shared/PreferenceChange.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "Platform/DistributedNotifications.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kGlobal = "VantorBarGlobalDisplayChange";
constexpr std::string_view kCPU = "VantorBarCPUPreferencesChanged";
constexpr std::string_view kCombined = "VantorBarCombinedDisplayChange";

struct Row {
    std::string_view keyPrefix;
    PreferenceChange change;
};

/// The first row whose prefix the key has decides.
constexpr Row kRows[] = {
    {"CPU_MenubarGraph", {kCPU, "graph"}},
    {"CPU_MenubarText", {kCPU, "text"}},
    {"Load_MenubarText", {kCPU, "text"}},
    {"CPU_CombineLogicalCores", {kCPU, "logicalcores"}},
    {"CPU_", {kCPU, ""}},
    {"Load_", {kCPU, ""}},
    {"Combined", {kCombined, ""}},
    {"DropdownTheme", {kGlobal, "dropdown"}},
    {"Theme-SeperateStyles", {kGlobal, "styles"}},
    {"DropdownShowLauncher", {kGlobal, "launcher"}},
    {"", {kGlobal, ""}},  // sibling modules, too: every extra forgets its copy
};

}  // namespace

PreferenceChange preferenceChange(std::string_view key) noexcept {
    const auto row = std::ranges::find_if(
        kRows, [key](const Row& candidate) { return key.starts_with(candidate.keyPrefix); });
    return row == std::end(kRows) ? PreferenceChange{} : row->change;
}

void postPreferenceChange(std::string_view key, DistributedNotifications& notifications) {
    const PreferenceChange change = preferenceChange(key);
    NotificationInfo info{{"key", std::string(key)}};
    if (!change.resetKey.empty())
        info.emplace("resetKey", change.resetKey);
    notifications.post(change.notification, info);
}

}  // namespace vantor::inline VANTOR_MODULE
