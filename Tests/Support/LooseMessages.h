#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include <sys/socket.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace vantor::test {

/// Makes messages that are never sent: to write them, then read them as a receiver would.
class LooseMessages {
public:
    struct Release {
        void operator()(sd_bus_message* message) const noexcept { sd_bus_message_unref(message); }
    };
    using Message = std::unique_ptr<sd_bus_message, Release>;

    LooseMessages() {
        sd_bus* bus = nullptr;
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0 || sd_bus_new(&bus) < 0)
            throw std::runtime_error("no bus");
        bus_.reset(bus);
        if (sd_bus_set_fd(bus, ends_[0], ends_[0]) < 0 || sd_bus_start(bus) < 0)
            throw std::runtime_error("no bus");
    }
    ~LooseMessages() { close(ends_[1]); }  // the bus closes the other one
    LooseMessages(const LooseMessages&) = delete;
    LooseMessages& operator=(const LooseMessages&) = delete;

    /// Null where what `write` did makes no message.
    Message written(const std::function<void(sd_bus_message& message)>& write) const {
        sd_bus_message* made = nullptr;
        if (sd_bus_message_new_method_call(bus_.get(), &made, nullptr, "/a", "b.c", "D") < 0)
            return nullptr;
        Message message(made);
        write(*made);
        const bool isGood =
            sd_bus_message_seal(made, 1, 0) >= 0 && sd_bus_message_rewind(made, 1) >= 0;
        return isGood ? std::move(message) : nullptr;
    }

private:
    struct Close {
        void operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
    };
    int ends_[2] = {-1, -1};
    std::unique_ptr<sd_bus, Close> bus_;
};

}  // namespace vantor::test
