#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// `vantorbar snapshot OUT.png`: the live item of this machine as a picture.
void addSnapshotCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
