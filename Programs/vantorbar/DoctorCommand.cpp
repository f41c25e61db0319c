#include "Programs/vantorbar/DoctorCommand.h"

#include <cstdio>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/vantorbar/Doctor.h"
#include "Programs/vantorbar/ProgramDirectories.h"

namespace vantor {

void addDoctorCommand(CLI::App& app, int& exitStatus) {
    app.add_subcommand("doctor", "Say what this machine offers and what is missing")
        ->callback([&exitStatus] {
            LinuxPlatform platform(programDirectories());
            MachineFacts facts = factsFromPorts(platform.ports());
            addFactsOfThisProcess(facts);
            const auto findings = examine(facts);
            fmt::print("{}", report(findings));
            exitStatus = statusOf(findings);
        });
}

}  // namespace vantor
