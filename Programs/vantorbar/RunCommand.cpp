#include "Programs/vantorbar/RunCommand.h"

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <unistd.h>

#include "Hosts/Gtk/BarModule.h"
#include "Programs/vantorbar/RunSession.h"
#include "Programs/vantorbar/TerminalHere.h"

namespace vantor {
namespace {

struct RunArguments {
    std::string host;  // "" for the best that there is
    bool json = false;
    std::uint64_t count = 0;
    BarOptions bars{.edge = BarEdge::top, .side = ItemSide::right, .monitor = {}, .title = {}};
};

/// A host with bars, the best first.
struct BarChoice {
    std::string_view host;
    DisplaySystem system;
    const char* variable;  // says where the display is
};
constexpr BarChoice kBarChoices[]{{"wayland", DisplaySystem::wayland, "WAYLAND_DISPLAY"},
                                  {"x11", DisplaySystem::x11, "DISPLAY"}};

const std::map<std::string, ItemSide> kSides{{"left", ItemSide::left}, {"right", ItemSide::right}};

RunFace textFaceFor(const RunArguments& arguments, const TerminalAbilities& abilities) {
    if (arguments.host == "none")
        return RunFace::none;
    if (arguments.host == "offscreen")
        return RunFace::memory;
    if (arguments.json || isatty(STDOUT_FILENO) != 1)
        return RunFace::jsonLines;
    return abilities.cursor == Cursor::placed ? RunFace::screen : RunFace::plainLines;
}

bool isSet(const char* variable) noexcept {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != 0;
}

/// The toolkit, with such a display open; null where there is no such display.
BarToolkit* openToolkit(const BarChoice& choice) {
    if (!isSet(choice.variable))
        return nullptr;  // and the toolkit needn't be loaded to learn that
    BarToolkit* const toolkit = barToolkit();
    return toolkit != nullptr && toolkit->open(choice.system) ? toolkit : nullptr;
}

std::runtime_error noBars(const BarChoice& choice) {
    if (!isSet(choice.variable))
        return std::runtime_error(fmt::format("{} isn't set", choice.variable));
    const std::string_view trouble = barToolkitTrouble();
    return std::runtime_error(trouble.empty()
                                  ? fmt::format("no display that takes a bar ({})", choice.host)
                                  : std::string(trouble));
}

std::runtime_error noBarsAtAll() {
    for (const BarChoice& choice : kBarChoices)
        if (isSet(choice.variable))
            return noBars(choice);
    return std::runtime_error("there is no display: neither WAYLAND_DISPLAY nor DISPLAY is set");
}

/// Any kind of bar, and nothing else.
constexpr std::string_view kAnyBar = "bar";

/// Null where text is shown, because it is wanted or because there is nothing better. Throws
/// where there are no bars of the kind that was named.
BarToolkit* toolkitFor(const RunArguments& arguments) {
    const bool anyBar = arguments.host == kAnyBar;
    for (const BarChoice& choice : kBarChoices) {
        const bool named = arguments.host == choice.host;
        if (!named && !anyBar && (!arguments.host.empty() || arguments.json))
            continue;
        if (BarToolkit* const toolkit = openToolkit(choice))
            return toolkit;
        if (named)
            throw noBars(choice);
    }
    if (anyBar)
        throw noBarsAtAll();
    return nullptr;
}

RunOptions optionsFrom(const RunArguments& arguments) {
    BarToolkit* const toolkit = toolkitFor(arguments);
    const TerminalAbilities abilities = terminalHere().abilities();
    return {.face = toolkit != nullptr ? RunFace::bars : textFaceFor(arguments, abilities),
            .abilities = abilities,
            .count = arguments.count,
            .toolkit = toolkit,
            .bars = arguments.bars};
}

void addBarOptions(CLI::App& run, BarOptions& bars) {
    run.add_option("--monitor", bars.monitor, "The one with a bar: its number, from 0, or its name")
        ->type_name("MONITOR");
    run.add_flag_callback(
        "--bottom", [&bars] { bars.edge = BarEdge::bottom; }, "Bars at the bottom, not at the top");
    run.add_option("--align", bars.side, "The item's end of the bar: right, or left")
        ->transform(CLI::CheckedTransformer(kSides).description(""))
        ->type_name("SIDE");
}

}  // namespace

void addRunCommand(CLI::App& app, int& exitStatus) {
    const auto arguments = std::make_shared<RunArguments>();
    CLI::App* run = app.add_subcommand("run", "Measure and show, until q or Ctrl-C");
    run->add_option("--host", arguments->host,
                    "What shows it: a bar on wayland, else on x11, else text; bar is either of "
                    "the first two, offscreen paints for nobody, none only measures")
        ->check(CLI::IsMember({"wayland", "x11", "bar", "text", "offscreen", "none"}))
        ->type_name("NAME");
    CLI::Option* json = run->add_flag("--json", arguments->json, "A line of JSON for each sample");
    run->add_option("--count", arguments->count, "End after that many samples")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 53))
        ->type_name("N");
    addBarOptions(*run, arguments->bars);
    run->callback([arguments, json, &exitStatus] {
        if (arguments->json && !arguments->host.empty() && arguments->host != "text")
            throw CLI::ValidationError(json->get_name(),
                                       fmt::format("--host {} writes nothing", arguments->host));
        arguments->bars.title = "Vantor Bar CPU";
        exitStatus = RunSession(optionsFrom(*arguments)).run();
    });
}

}  // namespace vantor
