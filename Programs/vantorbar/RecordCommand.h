#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// `vantorbar record --seconds N OUT.json`: a scenario from this machine, for `simulate`.
void addRecordCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
