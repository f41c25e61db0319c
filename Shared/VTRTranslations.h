#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/StringTable.h"
#include "Platform/Ports.h"

namespace vantor::inline VANTOR_MODULE {

/// The user's words for the program's texts, from the files "LANGUAGE.lproj/TABLE.strings" of the
/// extra's own bundle. The language is the setting "language", as it stands, else the best that
/// the bundle has for the user, else English.
/// A table is read when a text of it is first wanted, and kept: a change of "language" shows after
/// a restart. One that is missing or empty isn't remembered, and is looked for again each time.
/// Errors: none; a text that can't be had is nothing.
/// Thread: main queue only, as there is no lock.
class VTRTranslations {
public:
    /// By file name, such as "cpu.strings".
    using Tables = std::map<std::string, StringTable, std::less<>>;

    explicit VTRTranslations(const Ports& ports) noexcept : ports_(ports) {}

    static VTRTranslations& sharedTranslations();
    /// Nothing: tables come when they are wanted.
    void loadTranslations() noexcept {}

    /// The text of `key` in the table `bundle`; "" is the table "Localizable".
    std::optional<std::string> localizedString(std::string_view key, std::string_view bundle);

    const Tables& translations() const noexcept { return translations_; }

private:
    std::filesystem::path bundlePath() const;
    std::vector<std::string> localizations() const;
    std::optional<std::string> language() const;
    StringTable readTable(const std::string& fileName) const;

    Ports ports_;
    Tables translations_;
};

/// The text of `key` in `table`, in the user's language. Where the table has none or an empty one:
/// `fallback`, else the key, which is the English text.
std::string VTRLocalizedString(std::string_view key, std::optional<std::string_view> fallback,
                               std::string_view table);

}  // namespace vantor::inline VANTOR_MODULE
