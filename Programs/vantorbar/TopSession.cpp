#include "Programs/vantorbar/TopSession.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include "Programs/Common/ProgramDirectories.h"

namespace vantor {
namespace {

constexpr std::int64_t kProcessesKey = 1;
constexpr double kRetrySeconds = 1;
constexpr std::size_t kTableColumns = 200;  // where no screen sets an end

std::vector<int> signalsFor(TopFace face) {
    std::vector<int> signals{SIGINT, SIGTERM, SIGHUP};
    if (face == TopFace::screen)
        signals.insert(signals.end(), {SIGWINCH, SIGTSTP, SIGCONT});
    return signals;
}

std::string joined(const std::vector<std::string>& lines, std::string_view end) {
    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += end;
    }
    return text;
}

}  // namespace

class TopSession::Listener final : public VTRProcessesCallBackProtocol {
public:
    explicit Listener(TopSession& session) : session_(session) {}
    void processesUpdated(const PropertyValue::Dictionary& response) override {
        session_.take(response);
    }

private:
    TopSession& session_;
};

void TopSession::Link::connected() { startProcessesWithKey(kProcessesKey); }

TopSession::TopSession(const TopOptions& options)
    : options_(options),
      terminal_(options.face == TopFace::screen ? new Terminal(STDOUT_FILENO) : nullptr),
      platform_(programDirectories()), context_(platform_.ports()),
      signals_(platform_.mainQueue(), signalsFor(options.face),
               [this](int signal) { heard(signal); }),
      output_(STDOUT_FILENO, signals_.descriptor()), link_(platform_.ports(), *this) {
    watchTerminal();
    link_.addListener(std::make_shared<Listener>(*this), kProcessesKey);
}

void TopSession::watchTerminal() {
    LinuxMainQueue& queue = platform_.mainQueue();
    // Asks for nothing but to be told when the reader goes.
    outputGone_ = queue.watch(STDOUT_FILENO, 0, [&queue](short) { queue.stop(); });
    if (terminal_ && isatty(STDIN_FILENO) == 1)
        keys_ = queue.watch(STDIN_FILENO, POLLIN, [this](short) { readKeys(); });
}

void TopSession::run() {
    waitForList();
    link_.connectIfNeeded();
    platform_.mainQueue().run();
    if (!trouble_.empty())
        throw std::runtime_error(trouble_);
    if (output_.state() == OutputStream::State::failed)
        throw std::system_error(output_.error(), std::generic_category(), "standard output");
}

/// One that had lists for us may come back.
void TopSession::lostDaemon() {
    if (lists_ == 0)
        return fail("no daemon on a message bus lists processes");
    platform_.mainQueue().after(kRetrySeconds, [this] { link_.connectIfNeeded(); });
}

void TopSession::fail(std::string trouble) {
    trouble_ = std::move(trouble);
    platform_.mainQueue().stop();
}

void TopSession::waitForList() {
    LinuxMainQueue& queue = platform_.mainQueue();
    queue.cancel(patience_);
    patience_ = queue.after(kLongestWaitSeconds, [this] {
        fail(fmt::format("no list of processes came within {} seconds", kLongestWaitSeconds));
    });
}

void TopSession::take(const PropertyValue::Dictionary& response) {
    processes_ = processesIn(response);
    ++lists_;
    waitForList();
    show();
    if (lists_ == options_.count || output_.state() != OutputStream::State::open)
        platform_.mainQueue().stop();
}

void TopSession::show() {
    switch (options_.face) {
    case TopFace::jsonLines:
        return output_.write(processesAsJSON(platform_.ports().clock.now(), processes_) + '\n');
    case TopFace::tables:
        return output_.write(
            (lists_ > 1 ? "\n" : "") +
            joined(processesAsLines(processes_, kTableColumns, options_.glyphs), "\n"));
    case TopFace::screen:
        return output_.write(screenful());
    }
}

std::string TopSession::screenful() const {
    const TerminalSize size = terminal_->size();
    const std::size_t columns = size.columns > 0 ? size.columns - 1 : 0;  // so that none wraps
    auto lines = processesAsLines(processes_, columns, options_.glyphs);
    lines.resize(std::min(lines.size(), size.rows > 0 ? size.rows - 1 : 0));
    return "\x1b[H" + joined(lines, "\x1b[K\r\n") + "\x1b[J";
}

void TopSession::heard(int signal) {
    if (asksToEnd(signal))
        return platform_.mainQueue().stop();
    if (signal == SIGTSTP) {
        terminal_->leave();
        raise(SIGSTOP);  // returns when the shell goes on with us
    }
    terminal_->enter();
    show();
}

void TopSession::readKeys() {
    std::array<char, 64> bytes;
    const auto size = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (size <= 0)
        return keys_.end();
    if (std::find(bytes.begin(), bytes.begin() + size, 'q') != bytes.begin() + size)
        platform_.mainQueue().stop();
}

}  // namespace vantor
