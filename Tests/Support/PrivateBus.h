#pragma once

#include <filesystem>
#include <string>

#include <sys/types.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {

/// A message bus of the test's own. It ends with the test.
class PrivateBus {
public:
    /// The only service that the bus starts, and how; without a name none.
    struct Service {
        std::string name, command;
    };

    explicit PrivateBus(const Service& service = {});
    /// The bus starts the services that there are files of in that folder.
    explicit PrivateBus(const std::filesystem::path& services);
    ~PrivateBus() { end(); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const noexcept { return address_; }
    /// The bus dies, with all its connections.
    void end() noexcept;
    /// The bus dies, and is there again at the same address.
    void restart();
    /// From here on the bus accepts connections, and answers nothing.
    void freeze() noexcept;

private:
    void start();

    TemporaryFolder folder_;
    std::string address_;
    pid_t daemon_ = -1;
};

}  // namespace vantor::test
