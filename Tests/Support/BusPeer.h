#pragma once

#include <functional>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

#include "Platform/Linux/BusConnection.h"
#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor::test {

/// Somebody else on the bus, such as a service that a test plays. It is served by the test's own
/// main queue.
class BusPeer {
public:
    /// Connects at once; with a `name` it owns that, too.
    BusPeer(LinuxMainQueue& queue, const std::string& address, const std::string& name = {});
    BusPeer(const BusPeer&) = delete;
    BusPeer& operator=(const BusPeer&) = delete;

    sd_bus* get() const noexcept { return bus_.get(); }
    /// Answers every method call that comes; the result is what sd_bus_reply_... gave.
    void setAnswer(std::function<int(sd_bus_message* call)> answer) { answer_ = std::move(answer); }
    /// Hears every signal of that interface which is sent to everybody.
    void setListener(const std::string& interface, std::function<void(sd_bus_message*)> listener);
    /// Sends to everybody or, with a `destination`, to that one alone.
    template <class... Arguments>
    void emitSignal(const BusAddressee& from, const char* types, Arguments... arguments) {
        emit(from, nullptr, types, arguments...);
    }
    template <class... Arguments>
    void emitSignalTo(const std::string& destination, const BusAddressee& from, const char* types,
                      Arguments... arguments) {
        emit(from, destination.c_str(), types, arguments...);
    }

private:
    struct Close {
        void operator()(sd_bus* bus) const noexcept { sd_bus_flush_close_unref(bus); }
    };

    template <class... Arguments>
    void emit(const BusAddressee& from, const char* destination, const char* types,
              Arguments... arguments) {
        sd_bus_message* signal = nullptr;
        sd_bus_message_new_signal(get(), &signal, from.path.c_str(), from.interface.c_str(),
                                  from.member.c_str());
        const BusMessage message(signal);
        sd_bus_message_append(signal, types, arguments...);
        if (destination != nullptr)
            sd_bus_message_set_destination(signal, destination);
        sd_bus_send(get(), signal, nullptr);
        sd_bus_flush(get());
    }

    std::unique_ptr<sd_bus, Close> bus_;
    std::function<int(sd_bus_message* call)> answer_;
    std::function<void(sd_bus_message* signal)> listener_;
    LinuxMainQueue::Watch watch_;
};

/// Has the bus answer a question on `connection`: all that it was sent before is in effect then.
bool settle(LinuxMainQueue& queue, BusConnection& connection);

}  // namespace vantor::test
