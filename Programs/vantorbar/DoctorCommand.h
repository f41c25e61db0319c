#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// Adds `doctor`: what this machine offers, what is missing, and what to do about it.
void addDoctorCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
