#include "Tests/Support/PrivateBus.h"

#include <array>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantor::test {
namespace {

constexpr const char* kConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:path={0}/socket</listen>
  <servicedir>{1}</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

/// The daemon prints its address once it listens.
std::string firstLineFrom(int descriptor) {
    std::string line;
    for (char next = 0; read(descriptor, &next, 1) == 1 && next != '\n';)
        line += next;
    return line;
}

pid_t startDaemon(const std::string& configuration, int output) {
    std::string program = "dbus-daemon", noFork = "--nofork", noFile = "--nopidfile",
                print = "--print-address=1", option = "--config-file=" + configuration;
    const std::array arguments{program.data(), noFork.data(), noFile.data(),
                               print.data(),   option.data(), static_cast<char*>(nullptr)};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    pid_t process = -1;
    const int error =
        posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : -1;
}

}  // namespace

PrivateBus::PrivateBus(const std::filesystem::path& services)
    : address_(fmt::format("unix:path={}", (folder_ / "socket").string())) {
    std::ofstream(folder_ / "bus.conf")
        << fmt::format(kConfiguration, folder_.path().string(), services.string());
    start();
}

PrivateBus::PrivateBus(const Service& service)
    : address_(fmt::format("unix:path={}", (folder_ / "socket").string())) {
    const std::string folder = folder_.path().string();
    std::ofstream(folder_ / "bus.conf") << fmt::format(kConfiguration, folder, folder);
    if (!service.name.empty())
        std::ofstream(folder_ / "test.service")
            << fmt::format("[D-BUS Service]\nName={}\nExec={}\n", service.name, service.command);
    start();
}

/// Returns once the bus listens.
void PrivateBus::start() {
    const auto configuration = folder_ / "bus.conf";
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    daemon_ = startDaemon(configuration, ends[1]);
    close(ends[1]);
    const bool isListening = !firstLineFrom(ends[0]).empty();
    close(ends[0]);
    if (daemon_ < 0 || !isListening) {
        end();
        throw std::runtime_error("no dbus-daemon");
    }
}

void PrivateBus::end() noexcept {
    const pid_t daemon = std::exchange(daemon_, -1);
    if (daemon < 0)
        return;
    kill(daemon, SIGKILL);
    waitpid(daemon, nullptr, 0);
}

void PrivateBus::restart() {
    end();
    start();
}

void PrivateBus::freeze() noexcept { kill(daemon_, SIGSTOP); }

}  // namespace vantor::test
