#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vantor::test {

using Words = std::vector<std::string>;

/// A process with a pipe at its standard output. It is killed with this.
class Child {
public:
    /// Its first word is looked for in our own PATH; `environment` is all that it is told.
    Child(Words words, Words environment);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool isRunning() const noexcept { return id_ > 0; }
    pid_t id() const noexcept { return id_; }
    /// What it writes up to the next line end, or its end.
    std::string line();
    std::string rest();
    /// Its status where it has ended by itself; -1 where a signal ended it.
    std::optional<int> statusIfEnded();
    /// Waits for the end.
    int status();

private:
    pid_t id_ = -1;
    int output_ = -1;
};

}  // namespace vantor::test
