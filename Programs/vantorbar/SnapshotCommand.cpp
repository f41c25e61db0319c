#include "Programs/vantorbar/SnapshotCommand.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Foundation/Colour.h"
#include "Hosts/Offscreen/OffscreenHost.h"
#include "Platform/Linux/LinuxDirectories.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/Common/SettingValue.h"
#include "Programs/vantorbar/CatalogueSheet.h"
#include "Programs/vantorbar/OverlaidPorts.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

struct SnapshotArguments {
    std::filesystem::path file;
    double waitSeconds = 3;
    int scale = 1;
    bool dark = false, contrast = false, menuOpen = false, catalogue = false;
    std::string background;
    std::vector<std::string> settings;
};

/// Lays "KEY=VALUE" over the stored settings. Throws std::invalid_argument for what can't be.
void overlay(OverlaidPreferences& preferences, const PropertyValue::Dictionary& defaults,
             const std::string& setting) {
    const auto equals = setting.find('=');
    if (equals == std::string::npos)
        throw std::invalid_argument(fmt::format("{}: expected KEY=VALUE", setting));
    const std::string key = setting.substr(0, equals), text = setting.substr(equals + 1);
    const auto standard = defaults.find(key);
    if (standard == defaults.end()) {
        preferences.write(key, freelyParsedSetting(text));
        return;
    }
    const ParsedSetting parsed = parsedSetting(key, text, standard->second);
    if (parsed.value.isNothing())
        throw std::invalid_argument(fmt::format("{}: expected {}", setting, parsed.expected));
    preferences.write(key, parsed.value);
}

std::optional<Colour> backgroundOf(const SnapshotArguments& arguments) {
    if (arguments.background.empty())
        return std::nullopt;
    const auto colour = colorFromString(arguments.background);
    if (!colour)
        throw std::invalid_argument(
            fmt::format("{}: expected a colour, as in \"1 1 1 1\"", arguments.background));
    return colour;
}

void takeSnapshot(const SnapshotArguments& arguments) {
    LinuxPlatform platform(programDirectories());
    const Ports own = platform.ports();
    OverlaidPreferences preferences(own.preferences);
    // Measured as often as can be, so that the picture has something to show.
    preferences.write("TimerFrequency", std::int64_t{2});
    for (const std::string& setting : arguments.settings)
        overlay(preferences, VTRPreferences::defaultsFor(own), setting);
    FixedAppearance appearance(arguments.dark, arguments.contrast);
    const std::optional<Colour> background = backgroundOf(arguments);

    ProcessContext context(
        overriddenPorts(own, {.preferences = &preferences, .appearance = &appearance}));
    OffscreenHost host;
    VantorBarCPU extra(host);
    host.setExtra(&extra);
    host.setMenuDown(arguments.menuOpen);
    platform.mainQueue().setAfterCalls([&host] { host.displayIfNeeded(); });
    platform.mainQueue().after(arguments.waitSeconds, [&platform] { platform.mainQueue().stop(); });
    platform.mainQueue().run();
    platform.mainQueue().setAfterCalls({});
    const bool written = host.snapshot(arguments.scale, background).writePNG(arguments.file);
    host.setExtra(nullptr);
    extra.willUnload();
    if (!written)
        throw std::runtime_error(fmt::format("{}: can't be written", arguments.file.string()));
}

void takeCatalogue(const SnapshotArguments& arguments) {
    const Painting::ImageSurface sheet =
        paintCatalogue(LinuxDirectories(programDirectories()).resources(), arguments.scale,
                       arguments.dark ? Paper::dark : Paper::light);
    if (!sheet.writePNG(arguments.file))
        throw std::runtime_error(fmt::format("{}: can't be written", arguments.file.string()));
}

int snapshot(const SnapshotArguments& arguments) {
    try {
        if (arguments.catalogue)
            takeCatalogue(arguments);
        else
            takeSnapshot(arguments);
        return 0;
    } catch (const std::invalid_argument& error) {
        fmt::print(stderr, "vantorbar: {}\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        fmt::print(stderr, "vantorbar: {}\n", error.what());
        return 1;
    }
}

}  // namespace

void addSnapshotCommand(CLI::App& app, int& exitStatus) {
    const auto arguments = std::make_shared<SnapshotArguments>();
    CLI::App* const command = app.add_subcommand("snapshot", "Paint the item into a picture");
    command->add_option("OUT", arguments->file, "The picture, a PNG file")->required();
    command->add_option("--wait", arguments->waitSeconds, "Measure for so long first")
        ->check(CLI::Range(0.0, 3600.0))
        ->type_name("SECONDS");
    command->add_option("--scale", arguments->scale, "Pixels a point")
        ->check(CLI::Range(1, 3))
        ->type_name("1|2|3");
    command->add_flag("--dark", arguments->dark, "As on a dark desktop");
    command->add_flag("--contrast", arguments->contrast, "As with increased contrast");
    command->add_flag("--menu-open", arguments->menuOpen, "As while its menu is open");
    command->add_option("--background", arguments->background, "Behind the item; else transparent")
        ->type_name("COLOUR");
    command->add_option("--set", arguments->settings, "Another setting, for this picture")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
    command->add_flag("--catalogue", arguments->catalogue,
                      "Not the item, but all rows and controls of the dropdown, in both themes");
    command->callback([arguments, &exitStatus] { exitStatus = snapshot(*arguments); });
}

}  // namespace vantor
