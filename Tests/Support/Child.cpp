#include "Tests/Support/Child.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantor::test {
namespace {

std::vector<char*> pointers(Words& words) {
    std::vector<char*> all;
    for (std::string& word : words)
        all.push_back(word.data());
    all.push_back(nullptr);
    return all;
}

int statusFrom(int status) noexcept { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }

}  // namespace

Child::Child(Words words, Words environment) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (posix_spawnp(&id_, words.front().c_str(), &actions, nullptr, pointers(words).data(),
                     pointers(environment).data()) != 0)
        id_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output_ = ends[0];
}

Child::~Child() {
    if (isRunning()) {
        kill(id_, SIGKILL);
        status();
    }
    close(output_);
}

std::string Child::line() {
    std::string text;
    for (char byte = 0; read(output_, &byte, 1) == 1 && byte != '\n';)
        text += byte;
    return text;
}

std::string Child::rest() {
    std::string text;
    std::array<char, 65536> bytes;
    for (ssize_t size = 0; (size = read(output_, bytes.data(), bytes.size())) > 0;)
        text.append(bytes.data(), static_cast<std::size_t>(size));
    return text;
}

std::optional<int> Child::statusIfEnded() {
    int status = 0;
    if (!isRunning() || waitpid(id_, &status, WNOHANG) != id_)
        return std::nullopt;
    id_ = -1;
    return statusFrom(status);
}

int Child::status() {
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    return statusFrom(status);
}

}  // namespace vantor::test
