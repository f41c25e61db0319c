#pragma once

namespace CLI {
class App;
}

namespace vantor {

/// Adds `history`: shows what the history files hold, beside a program that is writing them.
void addHistoryCommand(CLI::App& app, int& exitStatus);

}  // namespace vantor
