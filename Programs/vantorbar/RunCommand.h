#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// Adds `run`: the item, shown until somebody ends it.
void addRunCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
