#include "Programs/vantorbar/PrefsCommand.h"

#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/vantorbar/SettingsTool.h"
#include "Shared/VTRPreferences.h"

namespace vantor {
namespace {

/// Whoever types the command wants to know, wherever the system's log goes.
class StandardErrorLog final : public SystemLog {
public:
    void write(std::string_view text) noexcept override {
        std::cerr << "vantorbar: " << text << '\n';
    }
};

/// `status`, unless the output went nowhere.
int withOutputWritten(int status) {
    std::cout.flush();
    return status == 0 && !std::cout ? 1 : status;
}

/// The exit status of `work` on this user's settings.
int withSettings(const std::function<int(SettingsTool&)>& work) {
    LinuxPlatform platform(programDirectories());
    const Ports ports = platform.ports();
    StandardErrorLog log;
    LinuxPreferenceDomain stored(LinuxPreferenceDomain::extrasFile(ports.directories), log,
                                 ports.clock);
    SettingsTool tool(stored, VTRPreferences::defaultsFor(ports), ports.distributedNotifications,
                      std::cout, std::cerr);
    return withOutputWritten(work(tool));
}

/// Migration asks more of the machine than where the settings are.
int migrateSettings() {
    LinuxPlatform platform(programDirectories());
    const Ports ports = platform.ports();
    VTRPreferences preferences(ports);
    SettingsTool tool(ports.preferences, preferences.defaults(), ports.distributedNotifications,
                      std::cout, std::cerr);
    return withOutputWritten(tool.migrate(preferences));
}

void addList(CLI::App& prefs, int& exitStatus) {
    const auto all = std::make_shared<bool>(false), json = std::make_shared<bool>(false);
    CLI::App* const list = prefs.add_subcommand("list", "Show all settings");
    list->add_flag("--all", *all, "Those of the sibling modules, too");
    list->add_flag("--json", *json, "As one JSON object");
    list->callback([all, json, &exitStatus] {
        exitStatus = withSettings([&](SettingsTool& tool) {
            return tool.list(*all ? ListedKeys::all : ListedKeys::ours,
                             *json ? ListFormat::json : ListFormat::table);
        });
    });
}

void addGet(CLI::App& prefs, int& exitStatus) {
    const auto key = std::make_shared<std::string>();
    CLI::App* const get = prefs.add_subcommand("get", "Show the value of one setting");
    get->add_option("KEY", *key, "The setting")->required();
    get->callback([key, &exitStatus] {
        exitStatus = withSettings([&](SettingsTool& tool) { return tool.get(*key); });
    });
}

void addSet(CLI::App& prefs, int& exitStatus) {
    struct Arguments {
        std::string key, value;
        bool force = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const set = prefs.add_subcommand("set", "Store a value and show it at once");
    set->add_option("KEY", arguments->key, "The setting")->required();
    set->add_option("VALUE", arguments->value, "Its value")->required();
    set->add_flag("--force", arguments->force, "Also where the setting has no default");
    set->callback([arguments, &exitStatus] {
        exitStatus = withSettings([&](SettingsTool& tool) {
            return tool.set(arguments->key, arguments->value,
                            arguments->force ? UnknownKeys::allowed : UnknownKeys::refused);
        });
    });
}

void addReset(CLI::App& prefs, int& exitStatus) {
    const auto key = std::make_shared<std::string>();
    CLI::App* const reset = prefs.add_subcommand("reset", "Go back to a setting's default");
    reset->add_option("KEY", *key, "The setting")->required();
    reset->callback([key, &exitStatus] {
        exitStatus = withSettings([&](SettingsTool& tool) { return tool.reset(*key); });
    });
}

void addMigrate(CLI::App& prefs, int& exitStatus) {
    CLI::App* const migrate =
        prefs.add_subcommand("migrate", "Take over the settings of the previous version");
    migrate->callback([&exitStatus] { exitStatus = migrateSettings(); });
}

}  // namespace

void addPrefsCommand(CLI::App& app, int& exitStatus) {
    CLI::App* const prefs = app.add_subcommand("prefs", "Show the settings, and change them");
    prefs->require_subcommand(1);
    addList(*prefs, exitStatus);
    addGet(*prefs, exitStatus);
    addSet(*prefs, exitStatus);
    addReset(*prefs, exitStatus);
    addMigrate(*prefs, exitStatus);
}

}  // namespace vantor
