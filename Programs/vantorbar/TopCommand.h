#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// Adds `top`: the busiest processes, as the daemon lists them.
void addTopCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
