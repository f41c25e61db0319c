#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor {

/// The client's end of a link to the daemon: what comes back over it. Each call comes by itself,
/// never inside one of the link's operations, and may end the link. Main queue.
class DaemonClient {
public:
    virtual ~DaemonClient() = default;
    virtual void daemonResponse(const PropertyValue::Dictionary& response) = 0;
    /// The daemon dropped the link.
    virtual void interrupted() = 0;
    /// There is no such daemon, or no way to it.
    virtual void invalidated() = 0;
};

/// An open link. Its end closes it: the client hears nothing more. Main queue.
class DaemonConnection {
public:
    virtual ~DaemonConnection() = default;
    /// One way: what can't be delivered is dropped. `operation` is one of DaemonProtocol.
    virtual void call(std::string_view operation, const PropertyValue::Array& arguments) = 0;
    /// Asks for the daemon's version pair; without an answer, `reply` is never called.
    virtual void version(std::function<void(std::int64_t, std::int64_t)> reply) = 0;
};

/// Port: the two-way link to the daemon. No operation of it or its links waits. Main queue.
class DaemonTransport {
public:
    virtual ~DaemonTransport() = default;
    /// Succeeds whether or not there is a daemon: its absence shows later, at the earliest once
    /// something was sent. `client` outlives the connection.
    virtual std::unique_ptr<DaemonConnection> connect(DaemonClient& client) = 0;
};

}  // namespace vantor
