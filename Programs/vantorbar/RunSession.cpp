#include "Programs/vantorbar/RunSession.h"

#include <array>
#include <csignal>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "Hosts/Gtk/BarHost.h"
#include "Hosts/None/NoHost.h"
#include "Hosts/Offscreen/MemoryHost.h"
#include "Hosts/Text/LineHost.h"
#include "Hosts/Text/TextHost.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

constexpr char kRedrawKey = 'L' - '@';  // Ctrl-L

std::vector<int> signalsFor(RunFace face) {
    std::vector<int> signals{SIGINT, SIGTERM, SIGHUP};
    if (face == RunFace::screen)
        signals.insert(signals.end(), {SIGWINCH, SIGTSTP, SIGCONT});
    return signals;
}

bool writesOutput(RunFace face) noexcept {
    return face == RunFace::jsonLines || face == RunFace::plainLines || face == RunFace::screen;
}

}  // namespace

RunSession::RunSession(const RunOptions& options)
    : terminal_(options.face == RunFace::screen ? new Terminal(STDOUT_FILENO) : nullptr),
      platform_(programDirectories()), context_(platform_.ports()),
      signals_(platform_.mainQueue(), signalsFor(options.face),
               [this](int signal) { heard(signal); }),
      output_(STDOUT_FILENO, signals_.descriptor()), host_(makeHost(options)),
      count_(options.count) {
    watchOutput(options.face);
    if (bars_ != nullptr)
        barLoop_ = std::make_unique<BarLoop>(platform_.mainQueue(), *options.toolkit, *bars_);
}

std::unique_ptr<ItemHost> RunSession::makeHost(const RunOptions& options) {
    switch (options.face) {
    case RunFace::none:
        return std::make_unique<NoHost>();
    case RunFace::memory:
        return std::make_unique<MemoryHost>();
    case RunFace::jsonLines:
        return std::make_unique<LineHost>(output_, LineHost::Format::json);
    case RunFace::plainLines:
        return std::make_unique<LineHost>(output_, LineHost::Format::plain);
    case RunFace::bars:
        return makeBars(options);
    case RunFace::screen:
        break;
    }
    auto host = std::make_unique<TextHost>(*terminal_, output_, options.abilities);
    screen_ = host.get();
    return host;
}

std::unique_ptr<ItemHost> RunSession::makeBars(const RunOptions& options) {
    auto host = std::make_unique<BarHost>(*options.toolkit, options.bars);
    bars_ = host.get();
    return host;
}

void RunSession::watchOutput(RunFace face) {
    LinuxMainQueue& queue = platform_.mainQueue();
    if (writesOutput(face))  // asks for nothing but to be told when the reader goes
        outputGone_ = queue.watch(STDOUT_FILENO, 0, [&queue](short) { queue.stop(); });
    if (face == RunFace::screen && isatty(STDIN_FILENO) == 1)
        keys_ = queue.watch(STDIN_FILENO, POLLIN, [this](short) { readKeys(); });
}

int RunSession::run() {
    LinuxMainQueue& queue = platform_.mainQueue();
    VantorBarCPU extra(*host_);
    host_->setExtra(&extra);
    queue.setAfterCalls([&] {
        displayIfNeeded();
        const bool isDone = count_ > 0 && host_->samplesShown() >= count_;
        if (isDone || output_.state() != OutputStream::State::open ||
            extra.state() == VTRMenuExtra::State::unloaded)
            queue.stop();
    });
    queue.run();
    queue.setAfterCalls({});
    host_->setExtra(nullptr);
    const bool failed = extra.state() == VTRMenuExtra::State::unloaded;  // the log says why
    extra.willUnload();
    if (barLoop_ && barLoop_->isDisplayLost())
        throw std::runtime_error("the display has ended");
    if (output_.state() == OutputStream::State::failed)
        throw std::system_error(output_.error(), std::generic_category(), "standard output");
    return failed ? 1 : 0;
}

void RunSession::displayIfNeeded() {
    if (barLoop_)
        barLoop_->serve();
    else
        host_->displayIfNeeded();
}

void RunSession::heard(int signal) {
    if (asksToEnd(signal))
        platform_.mainQueue().stop();
    else if (signal == SIGTSTP)
        suspend();
    else if (signal == SIGWINCH)
        screen_->redraw();
    else
        redraw();
}

void RunSession::readKeys() {
    std::array<char, 64> bytes;
    const auto size = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (size <= 0) {
        keys_.end();
        return;
    }
    for (const char key : std::string_view(bytes.data(), static_cast<std::size_t>(size)))
        if (key == 'q')
            platform_.mainQueue().stop();
        else if (key == kRedrawKey)
            redraw();
}

void RunSession::suspend() {
    terminal_->leave();
    raise(SIGSTOP);  // returns when the shell goes on with us
    redraw();
}

/// Enters the terminal anew, too: a shell that was there meanwhile may have changed it.
void RunSession::redraw() {
    terminal_->enter();
    screen_->redraw();
}

}  // namespace vantor
