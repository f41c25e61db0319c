#include "Programs/vantorbar/RunCommand.h"

#include <cstdint>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "Programs/vantorbar/RunSession.h"
#include "Programs/vantorbar/TerminalHere.h"

namespace vantor {
namespace {

struct RunArguments {
    std::string host = "text";
    bool json = false;
    std::uint64_t count = 0;
};

RunFace faceFor(const RunArguments& arguments, const TerminalAbilities& abilities) {
    if (arguments.host == "none")
        return RunFace::none;
    if (arguments.json || isatty(STDOUT_FILENO) != 1)
        return RunFace::jsonLines;
    return abilities.cursor == Cursor::placed ? RunFace::screen : RunFace::plainLines;
}

RunOptions optionsFrom(const RunArguments& arguments) {
    const TerminalAbilities abilities = terminalHere().abilities();
    return {faceFor(arguments, abilities), abilities, arguments.count};
}

}  // namespace

void addRunCommand(CLI::App& app, int& exitStatus) {
    const auto arguments = std::make_shared<RunArguments>();
    CLI::App* run = app.add_subcommand("run", "Measure and show, until q or Ctrl-C");
    run->add_option("--host", arguments->host, "What shows it: text, or none to only measure")
        ->check(CLI::IsMember({"text", "none"}))
        ->type_name("NAME");
    CLI::Option* json = run->add_flag("--json", arguments->json, "A line of JSON for each sample");
    run->add_option("--count", arguments->count, "End after that many samples")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 53))
        ->type_name("N");
    run->callback([arguments, json, &exitStatus] {
        if (arguments->json && arguments->host == "none")
            throw CLI::ValidationError(json->get_name(), "--host none shows nothing");
        exitStatus = RunSession(optionsFrom(*arguments)).run();
    });
}

}  // namespace vantor
