#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>

#include <fmt/format.h>
#include <malloc.h>
#include <unistd.h>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxDistributedNotifications.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Linux/LinuxProcessSource.h"
#include "Platform/Linux/LinuxSystemLog.h"
#include "Programs/vantorbar-daemon/DaemonBus.h"

namespace vantor {
namespace {

constexpr const char* kName = "vantorbar-daemon";
constexpr int kWrongUsage = 2;
constexpr std::uint32_t kRoot = 0;
constexpr int kLargeBlockBytes = 64 * 1024;

/// A message can be large; what it took goes back to the system with it.
void returnLargeBlocks() noexcept {
    mallopt(M_MMAP_THRESHOLD, kLargeBlockBytes);
    mallopt(M_TRIM_THRESHOLD, kLargeBlockBytes);
}

/// Whoever has the bus start us has a fresh link, and nobody has a stale one: the bus told those
/// who had a link before. Only where somebody else starts us there is something to tell.
bool isStartedByTheBus() {
    return nonEmpty(processEnvironment(), "DBUS_STARTER_BUS_TYPE").has_value();
}

/// Serves until nobody needs it. False where it couldn't, which the log has been told.
bool serve() {
    const LinuxClock clock;
    LinuxSystemLog log(STDERR_FILENO, kName);
    LinuxMainQueue queue;
    BusConnection bus(queue, log, {"Message bus", "nobody can ask for processes"},
                      daemonBusAddress(processEnvironment()));
    LinuxDistributedNotifications notifications(queue, bus);
    LinuxProcessSource source(clock);
    DaemonBus link({queue, clock, log, bus}, {geteuid(), kRoot});
    const auto end = [&] { queue.stop(); };
    ProcessService service({queue, clock, source, log}, link, [&] { link.release(end); });

    bool isTaken = false;
    const auto announce = [&] {
        if (!isStartedByTheBus())
            notifications.post("VantorBarDaemonXPCReady", {});
    };
    link.own(service, announce, [&] {
        log.write(fmt::format("{} is somebody else's on this bus", kDaemonName));
        isTaken = true;
        end();
    });
    queue.setAfterCalls([&] {
        if (!bus.open())
            end();
    });
    if (bus.open())
        queue.run();
    return bus.open() && !isTaken;
}

constexpr const char* kUsage = "Usage: vantorbar-daemon [--help | --version]";

/// The status to end with: it takes a single word, and only to tell about itself.
int answer(std::string_view argument) {
    if (argument == "--version")
        fmt::print("{} {}\n", kName, VANTOR_VERSION);
    else if (argument == "--help")
        fmt::print("Lists the busiest processes for those who ask on the message bus, which starts "
                   "it.\n{}\n",
                   kUsage);
    else {
        fmt::print(stderr, "{}: what is {}?\n{}\n", kName, argument, kUsage);
        return kWrongUsage;
    }
    return 0;
}

}  // namespace
}  // namespace vantor

int main(int argc, char** argv) {
    if (argc > 1)
        return vantor::answer(argv[1]);
    try {
        vantor::returnLargeBlocks();
        return vantor::serve() ? 0 : 1;
    } catch (const std::exception& exception) {
        fmt::print(stderr, "{}: {}\n", vantor::kName, exception.what());
        return 1;
    }
}
