#include "Programs/vantorbar/DoctorCommand.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/vantorbar/Doctor.h"

namespace vantor {
namespace {

/// To attach to their devices, or between two readings of a counter.
constexpr std::chrono::milliseconds kDriversNeed{1000};

}  // namespace

void addDoctorCommand(CLI::App& app, int& exitStatus) {
    app.add_subcommand("doctor", "Say what this machine offers and what is missing")
        ->callback([&exitStatus] {
            LinuxPlatform platform(programDirectories());
            MachineFacts facts = factsFromPorts(platform.ports());
            addFactsOfThisProcess(facts);
            if (!facts.graphics.empty()) {
                std::this_thread::sleep_for(kDriversNeed);
                facts.graphics = graphicsFacts(platform.ports().registry);
            }
            const auto findings = examine(facts);
            fmt::print("{}", report(findings));
            exitStatus = statusOf(findings);
        });
}

}  // namespace vantor
