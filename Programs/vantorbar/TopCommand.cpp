#include "Programs/vantorbar/TopCommand.h"

#include <cstdint>
#include <memory>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "Programs/vantorbar/TerminalHere.h"
#include "Programs/vantorbar/TopSession.h"

namespace vantor {
namespace {

struct TopArguments {
    bool json = false;
    std::uint64_t count = 0;
};

TopOptions optionsFrom(const TopArguments& arguments) {
    const TerminalAbilities abilities = terminalHere().abilities();
    const bool updates = isatty(STDOUT_FILENO) == 1 && abilities.cursor == Cursor::placed;
    TopFace face = updates ? TopFace::screen : TopFace::tables;
    if (arguments.json)
        face = TopFace::jsonLines;
    return {face, abilities.glyphs, arguments.count};
}

}  // namespace

void addTopCommand(CLI::App& app, int& exitStatus) {
    const auto arguments = std::make_shared<TopArguments>();
    CLI::App* top = app.add_subcommand("top", "List the busiest processes, until q or Ctrl-C");
    top->add_flag("--json", arguments->json, "A line of JSON for each list");
    top->add_option("--count", arguments->count, "End after that many lists")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 53))
        ->type_name("N");
    top->callback([arguments, &exitStatus] {
        TopSession(optionsFrom(*arguments)).run();
        exitStatus = 0;
    });
}

}  // namespace vantor
