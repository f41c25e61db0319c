#pragma once

#include <cstdint>
#include <memory>

#include "Hosts/Gtk/BarLoop.h"
#include "Hosts/ItemHost.h"
#include "Hosts/Text/OutputStream.h"
#include "Hosts/Text/Terminal.h"
#include "Hosts/Text/TerminalShape.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/vantorbar/SignalWatch.h"
#include "Shared/ProcessContext.h"

namespace vantor {

class TextHost;

enum class RunFace : std::uint8_t { none, memory, jsonLines, plainLines, screen, bars };

struct RunOptions {
    RunFace face = RunFace::none;
    TerminalAbilities abilities;
    std::uint64_t count = 0;        // samples after which it ends; 0 for never
    BarToolkit* toolkit = nullptr;  // open, where the face is bars
    BarOptions bars{};
};

/// The item on this machine, from its start until somebody ends it: a signal, a key, the reader
/// of its lines, or the number of samples.
class RunSession {
public:
    /// Throws where the face can't be made.
    explicit RunSession(const RunOptions& options);

    /// Returns the program's status: 0, or 1 where the item couldn't start. Throws where the
    /// lines can't be written, and where the display of the bars has ended.
    int run();

private:
    std::unique_ptr<ItemHost> makeHost(const RunOptions& options);
    std::unique_ptr<ItemHost> makeBars(const RunOptions& options);
    void watchOutput(RunFace face);
    void displayIfNeeded();
    void heard(int signal);
    void readKeys();
    void suspend();
    void redraw();

    // First, so that the system log finds no terminal to write to: it would spoil the picture.
    std::unique_ptr<Terminal> terminal_;
    LinuxPlatform platform_;
    ProcessContext context_;
    SignalWatch signals_;
    OutputStream output_;
    TextHost* screen_ = nullptr;  // the host, where it is one that draws
    BarHost* bars_ = nullptr;     // the host, where it is one with bars
    std::unique_ptr<ItemHost> host_;
    std::unique_ptr<BarLoop> barLoop_;
    LinuxMainQueue::Watch outputGone_, keys_;
    std::uint64_t count_;
};

}  // namespace vantor
