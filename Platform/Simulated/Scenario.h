#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Foundation/Colour.h"
#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"
#include "Platform/LoadAverages.h"
#include "Platform/MachineIdentity.h"
#include "Platform/ProcessorCounters.h"
#include "Platform/Simulated/SimulatedGraphics.h"
#include "Platform/Simulated/SimulatedProcessorCounters.h"
#include "Platform/Simulated/SimulatedRegistry.h"

namespace vantor::simulated {

/// What is wrong with a scenario, and where: "events/3/stall: expected a number".
class ScenarioError : public std::runtime_error {
public:
    ScenarioError(std::string_view place, std::string_view reason);
};

/// What changes about the machine, or how it is at the start; what is absent stays.
struct MachineChange {
    std::optional<std::vector<ProcessorTicks>> ticks;
    std::optional<std::vector<SimulatedProcessorCounters::Rates>> rates;
    std::optional<FixedLoads> loads;
    std::optional<std::int32_t> tasks, threads;
    std::optional<PropertyValue> processes;  // an array of records; nothing without a daemon
    std::optional<RegistryNode> registry;
    std::optional<GraphicsAnswer> graphicsControl;
    std::optional<std::optional<double>> frameRate;  // nothing inside: the question fails
};

/// The preferences application writes the domain and says so.
struct PreferenceWrite {
    std::string key;
    PropertyValue value;       // nothing removes the key
    std::string notification;  // "" says nothing
    NotificationInfo info;
};

struct AppearanceChange {
    std::optional<bool> dark, contrast;
};

enum class DaemonChange { up, down, crash };

struct ClockStep {
    double seconds;
};
/// The main queue is held up.
struct Stall {
    double seconds;
};
struct Sleep {
    double seconds;
};
/// The program ends in good order and starts again on the same files.
struct Restart {
    double pauseSeconds;
};
/// The process dies; nothing is flushed. It may start again.
struct Kill {
    std::optional<double> pauseSeconds;
};

/// A history file is spoilt, while no program has it open.
struct Corruption {
    enum class Kind { zeros, text, truncated, empty };
    std::string file;
    Kind kind;
};

/// Somebody opens a menu of the dropdown, or closes one, by its name.
struct MenuOpening {
    std::string menu;
    bool opens;
};
/// The pointer comes to a row of the main menu; without a text it leaves them.
struct Highlight {
    std::optional<std::string> row;
};
/// A button of the launcher is pressed.
struct LauncherClick {
    std::int64_t tag;
};

struct ScenarioEvent {
    using Action = std::variant<MachineChange, PreferenceWrite, AppearanceChange, DaemonChange,
                                ClockStep, Stall, Sleep, Restart, Kill, Corruption, MenuOpening,
                                Highlight, LauncherClick>;
    double at;  // seconds after the start
    Action action;
};

/// The state, as text.
struct DumpOutput {
    std::string file;
};
/// The item, as the host shows it.
struct SnapshotOutput {
    std::string file;
    int scale = 1;
    std::optional<Colour> background;  // else transparent
    std::string of = "item";           // or the name of a menu
};

struct ScenarioOutput {
    double at;  // seconds after the start
    std::variant<DumpOutput, SnapshotOutput> what;
};

/// What a machine does, and what is written about the program on it.
struct Scenario {
    enum class Extra { cpu, combined };

    double start = 0;  // seconds since 1970
    double until = 0;  // seconds after the start
    double latencySeconds = 0.002;
    std::string timezone = "UTC";
    std::string locale = "en_US";

    std::size_t cpus = 2;
    std::int64_t configuredCPUs = 2, logicalCores = 2, physicalCores = 2;
    MachineChange machine;
    std::optional<std::int64_t> bootSeconds;
    std::optional<std::string> model, serial;
    std::vector<SimulatedScreen> screens;

    PropertyValue::Dictionary preferences;
    bool dark = false, contrast = false;
    Extra extra = Extra::cpu;
    SystemVersion system{10, 11, 0};
    std::vector<ScenarioEvent> events;    // "at" never falls
    std::vector<ScenarioOutput> outputs;  // "at" never falls
};

/// Throws ScenarioError: not JSON, an unknown key, a wrong type, a time that goes backwards.
Scenario scenarioFromText(std::string_view text);

/// The same for a file; one that can't be read is a ScenarioError, too.
Scenario scenarioFromFile(const std::filesystem::path& file);

}  // namespace vantor::simulated
