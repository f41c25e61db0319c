#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace vantor {

/// What a setting holds, and so how it is changed.
enum class SettingKind {
    flag,
    number,    // whole, in points
    fraction,  // 0 to 1
    choice,    // one of `choices`
    colour,
    modes,     // what the item shows, in its order
    language,  // a language of the tables, or nothing for the desktop's own
};

struct SettingChoice {
    std::int64_t value;
    std::string_view label;
};

/// Whether a setting that has no effect is shown nevertheless. One that stands in for another
/// isn't.
enum class Unmet { disables, hides };

/// Another setting, and what it has to be for this one to have an effect. Without a key, nothing.
struct SettingNeed {
    std::string_view key;
    std::int64_t value = 0;
    Unmet unmet = Unmet::disables;
};

/// One setting as the user sees it. Labels and help are keys of the table "preferences".
struct SettingDescription {
    std::string_view key;
    SettingKind kind;
    std::string_view label, help{};
    std::span<const SettingChoice> choices{};
    std::array<SettingNeed, 2> needs{};
};

struct SettingGroup {
    std::string_view title;  // may be ""
    std::span<const SettingDescription> settings;
};

enum class PageID {
    menuBar,
    sizesAndColours,
    cores,
    graphs,
    themes,
    updateRate,
    dropdown,
    language,
    history,
    about,
};

struct SettingsPage {
    PageID id;
    std::string_view title;
    bool showsItem;  // whether its settings can be seen in the item
    std::span<const SettingGroup> groups;
};

/// Every page, in the order in which they are listed. Those of the history and of the program
/// itself have no settings.
std::span<const SettingsPage> settingsPages() noexcept;
const SettingsPage& settingsPage(PageID id) noexcept;
/// Null for a key that no page has.
const SettingDescription* settingDescription(std::string_view key) noexcept;

/// Keys with a default that are of this item or of all, but that nothing in it reads: no control
/// is offered for them. They are stored for other programs of the suite.
std::span<const std::string_view> settingsWithoutEffect() noexcept;

/// What a mode of the item shows.
struct ModeDescription {
    std::int64_t mode;
    std::string_view name, help;
};
/// In the order in which modes that aren't shown are listed.
std::span<const ModeDescription> modeDescriptions() noexcept;

/// A language of the tables, by its own name.
struct LanguageDescription {
    std::string_view tag, name;
};
std::span<const LanguageDescription> languageDescriptions() noexcept;

}  // namespace vantor
