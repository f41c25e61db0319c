#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Hosts/Text/OutputStream.h"
#include "Hosts/Text/Terminal.h"
#include "Hosts/Text/TerminalShape.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/vantorbar/ProcessList.h"
#include "Programs/vantorbar/SignalWatch.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRDaemonConnection.h"

namespace vantor {

enum class TopFace : std::uint8_t { screen, tables, jsonLines };

struct TopOptions {
    TopFace face = TopFace::tables;
    Glyphs glyphs = Glyphs::ascii;
    std::uint64_t count = 0;  // lists after which it ends; 0 for never
};

/// The daemon's lists of processes, shown as they come: until a signal, a key, the reader's end or
/// the number of lists. A daemon that goes is asked for again.
class TopSession {
public:
    /// Before the first list, and between two.
    static constexpr double kLongestWaitSeconds = 5;

    explicit TopSession(const TopOptions& options);

    /// Throws, with what to tell people, where no list comes, and where lists can't be written.
    void run();

private:
    /// Asks for lists over each link that is made.
    class Link final : public VTRDaemonConnection {
    public:
        Link(const Ports& ports, TopSession& session)
            : VTRDaemonConnection(ports), session_(session) {}
        void connected() override;
        void disconnected() override { session_.lostDaemon(); }

    private:
        TopSession& session_;
    };
    class Listener;

    void watchTerminal();
    void lostDaemon();
    void fail(std::string trouble);
    void waitForList();
    void take(const PropertyValue::Dictionary& response);
    void show();
    std::string screenful() const;
    void heard(int signal);
    void readKeys();

    TopOptions options_;
    // First, so that the system log finds no terminal to write to: it would spoil the picture.
    std::unique_ptr<Terminal> terminal_;
    LinuxPlatform platform_;
    ProcessContext context_;
    SignalWatch signals_;
    OutputStream output_;
    Link link_;
    LinuxMainQueue::Watch outputGone_, keys_;
    MainQueue::CallID patience_ = MainQueue::CallID::none;
    std::vector<ListedProcess> processes_;
    std::uint64_t lists_ = 0;
    std::string trouble_;
};

}  // namespace vantor
