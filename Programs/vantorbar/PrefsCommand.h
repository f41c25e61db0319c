#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// Adds `prefs`: shows the settings, and changes them for every running program.
void addPrefsCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
