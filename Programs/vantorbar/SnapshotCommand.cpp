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
#include <fmt/ranges.h>

#include "Foundation/Colour.h"
#include "Hosts/Offscreen/OffscreenHost.h"
#include "Platform/Linux/LinuxDirectories.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/Common/SettingValue.h"
#include "Programs/vantorbar/CatalogueSheet.h"
#include "Programs/vantorbar/DropdownMenus.h"
#include "Programs/vantorbar/OverlaidPorts.h"
#include "Programs/vantorbar/PrivateDirectories.h"
#include "Shared/Collectors/CPUStatCollector.h"
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
    bool dropdown = false;
    std::string submenu;  // "" for the dropdown itself
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

/// The settings that the picture is painted with.
void overlayAll(OverlaidPreferences& preferences, const PropertyValue::Dictionary& defaults,
                const SnapshotArguments& arguments) {
    // Measured as often as can be, so that the picture has something to show.
    preferences.write("TimerFrequency", std::int64_t{2});
    if (arguments.dropdown && arguments.dark)
        preferences.write("DropdownTheme", std::int64_t{1});
    for (const std::string& setting : arguments.settings)
        overlay(preferences, defaults, setting);
}

/// The extra of this machine, measuring, for as long as a picture takes.
class Sitting {
public:
    Sitting(LinuxPlatform& platform, const SnapshotArguments& arguments)
        : queue_(platform.mainQueue()), arguments_(arguments) {
        host_.setExtra(&extra_);
        host_.setMenuDown(arguments.menuOpen);
        queue_.setAfterCalls([this] { showWhatIsThere(); });
    }
    ~Sitting() {
        queue_.setAfterCalls({});
        for (const std::string& name : menus_.openNames())
            (void)menus_.close(name);
        host_.setExtra(nullptr);
        extra_.willUnload();
    }
    Sitting(const Sitting&) = delete;
    Sitting& operator=(const Sitting&) = delete;

    Painting::ImageSurface itemPicture(const std::optional<Colour>& background) {
        waitFor(arguments_.waitSeconds);
        return host_.snapshot(arguments_.scale, background);
    }
    /// Throws std::invalid_argument where the machine has no such submenu.
    Painting::ImageSurface dropdownPicture(const std::optional<Colour>& background) {
        waitFor(arguments_.waitSeconds);
        const std::string name = arguments_.submenu.empty() ? "main" : arguments_.submenu;
        if (!menus_.open("main") || !menus_.open(name))
            throw std::invalid_argument(fmt::format("{}: this machine has no such submenu, but {}",
                                                    name, fmt::join(submenuNames(extra_), ", ")));
        waitFor(kSettleSeconds);
        VTRMenu* const menu = menuNamed(extra_, name);
        if (menu == nullptr)
            throw std::runtime_error(fmt::format("{}: went away again", name));
        return OffscreenMenu::snapshot(*menu, arguments_.scale, background);
    }

private:
    static constexpr double kSettleSeconds = 0.05;  // what opening a menu leaves for later

    void waitFor(double seconds) {
        queue_.after(seconds, [this] { queue_.stop(); });
        queue_.run();
    }
    /// The dropdown opens with the first sample, so that its figures have the whole time to come.
    void showWhatIsThere() {
        host_.displayIfNeeded();
        if (!arguments_.dropdown)
            return;
        const bool hasSample =
            CPUStatCollector::sharedCPUCollector().sampleAtIndex(0, StorageType::now).sampleID > 0;
        if (hasSample && !menus_.isOpen("main"))
            (void)menus_.open("main");  // where it can't be now, the picture tells
        menus_.displayIfNeeded();
    }

    LinuxMainQueue& queue_;
    const SnapshotArguments& arguments_;
    OffscreenHost host_;
    VantorBarCPU extra_{host_};
    DropdownMenus menus_{extra_};
};

void write(const Painting::ImageSurface& picture, const std::filesystem::path& file) {
    if (picture.widthPixels() == 0)
        throw std::runtime_error(fmt::format("{}: would be too large a picture", file.string()));
    if (!picture.writePNG(file))
        throw std::runtime_error(fmt::format("{}: can't be written", file.string()));
}

void takeSnapshot(const SnapshotArguments& arguments) {
    if (!arguments.submenu.empty() && !isSubmenuName(arguments.submenu))
        throw std::invalid_argument(
            fmt::format("{}: no such submenu; expected cores, history, load, uptime, memory:KEY or "
                        "processor:KEY",
                        arguments.submenu));
    LinuxPlatform platform(programDirectories());
    const Ports own = platform.ports();
    OverlaidPreferences preferences(own.preferences);
    overlayAll(preferences, VTRPreferences::defaultsFor(own), arguments);
    FixedAppearance appearance(arguments.dark, arguments.contrast);
    PrivateDirectories directories(own.directories);
    const std::optional<Colour> background = backgroundOf(arguments);

    ProcessContext context(overriddenPorts(
        own,
        {.directories = &directories, .preferences = &preferences, .appearance = &appearance}));
    Sitting sitting(platform, arguments);
    write(arguments.dropdown ? sitting.dropdownPicture(background)
                             : sitting.itemPicture(background),
          arguments.file);
}

void takeCatalogue(const SnapshotArguments& arguments) {
    const Painting::ImageSurface sheet =
        paintCatalogue(LinuxDirectories(programDirectories()).resources(), arguments.scale,
                       arguments.dark ? Paper::dark : Paper::light);
    write(sheet, arguments.file);
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
    CLI::Option* const dropdown =
        command->add_flag("--dropdown", arguments->dropdown,
                          "Not the item, but its dropdown; --dark is its theme then");
    command
        ->add_option("--submenu", arguments->submenu,
                     "Of the dropdown: cores, history, load, uptime, memory:KEY or processor:KEY "
                     "of a graphics processor")
        ->type_name("NAME")
        ->needs(dropdown);
    command->add_option("--background", arguments->background, "Behind it all; else transparent")
        ->type_name("COLOUR");
    command->add_option("--set", arguments->settings, "Another setting, for this picture")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
    command->add_flag("--catalogue", arguments->catalogue,
                      "Not the item, but all rows and controls of the dropdown, in both themes");
    command->callback([arguments, &exitStatus] { exitStatus = snapshot(*arguments); });
}

}  // namespace vantor
