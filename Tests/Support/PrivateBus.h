#pragma once

#include <string>

#include <sys/types.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {

/// A message bus of the test's own. It starts the services that `services` has files of, or none,
/// and ends with the test.
class PrivateBus {
public:
    explicit PrivateBus(const std::filesystem::path& services = {});
    ~PrivateBus() { end(); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const noexcept { return address_; }
    /// The bus dies, with all its connections.
    void end() noexcept;
    /// From here on the bus accepts connections, and answers nothing.
    void freeze() noexcept;

private:
    TemporaryFolder folder_;
    std::string address_;
    pid_t daemon_ = -1;
};

}  // namespace vantor::test
