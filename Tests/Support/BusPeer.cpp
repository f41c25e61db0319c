#include "Tests/Support/BusPeer.h"

#include <stdexcept>
#include <utility>

#include <poll.h>

#include "Tests/Support/QueueWorld.h"

namespace vantor::test {
namespace {

void check(int result) {
    if (result < 0)
        throw std::runtime_error("no peer on the bus");
}

}  // namespace

BusPeer::BusPeer(LinuxMainQueue& queue, const std::string& address, const std::string& name) {
    sd_bus* bus = nullptr;
    check(sd_bus_new(&bus));
    bus_.reset(bus);
    check(sd_bus_set_address(bus, address.c_str()));
    check(sd_bus_set_bus_client(bus, 1));
    check(sd_bus_start(bus));
    if (!name.empty())
        check(sd_bus_request_name(bus, name.c_str(), 0));
    check(sd_bus_flush(bus));
    const auto answer = [](sd_bus_message* message, void* peer, sd_bus_error*) {
        auto& self = *static_cast<BusPeer*>(peer);
        const bool isCall = sd_bus_message_is_method_call(message, nullptr, nullptr) > 0;
        return isCall && self.answer_ ? self.answer_(message) : 0;
    };
    check(sd_bus_add_filter(bus, nullptr, answer, this));
    watch_ = queue.watch(sd_bus_get_fd(bus), POLLIN, [bus](short) {
        while (sd_bus_process(bus, nullptr) > 0) {
        }
    });
}

void BusPeer::setListener(const std::string& interface,
                          std::function<void(sd_bus_message*)> listener) {
    listener_ = std::move(listener);
    const auto heard = [](sd_bus_message* signal, void* peer, sd_bus_error*) {
        static_cast<BusPeer*>(peer)->listener_(signal);
        return 0;
    };
    const std::string match = "type='signal',interface='" + interface + "'";
    check(sd_bus_add_match(get(), nullptr, match.c_str(), heard, this));
}

bool settle(LinuxMainQueue& queue, BusConnection& connection) {
    bool isAnswered = false;
    const BusMessage question = connection.newCall({.peer = "org.freedesktop.DBus",
                                                    .path = "/org/freedesktop/DBus",
                                                    .interface = "org.freedesktop.DBus",
                                                    .member = "GetId"});
    if (!question)
        return false;
    const auto slot = connection.call(*question, [&](sd_bus_message&) { isAnswered = true; });
    return runUntil(queue, [&] { return isAnswered; });
}

}  // namespace vantor::test
