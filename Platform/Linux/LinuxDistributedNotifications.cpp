#include "Platform/Linux/LinuxDistributedNotifications.h"

#include <optional>
#include <utility>

#include <systemd/sd-bus.h>

namespace vantor {
namespace {

// Ours have two short entries. What is far beyond that wasn't sent by us.
constexpr std::size_t kMostEntries = 64;
constexpr std::size_t kMostTextBytes = 64 * 1024;
constexpr double kFlushSeconds = 0.5;

const BusAddressee& everybody() {
    static const BusAddressee signal{.peer = "",
                                     .path = "/com/kolbrin/vantorbar/Notifications",
                                     .interface = "com.kolbrin.vantorbar.Notifications",
                                     .member = "Posted"};
    return signal;
}

/// False where the texts aren't what a bus carries.
bool write(sd_bus_message& message, const std::string& name, const NotificationInfo& info) {
    bool isGood = sd_bus_message_append(&message, "s", name.c_str()) >= 0 &&
                  sd_bus_message_open_container(&message, SD_BUS_TYPE_ARRAY, "{ss}") >= 0;
    for (const auto& [key, value] : info)
        isGood = isGood && sd_bus_message_append(&message, "{ss}", key.c_str(), value.c_str()) >= 0;
    return isGood && sd_bus_message_close_container(&message) >= 0;
}

/// Nothing where the next argument isn't a dictionary of texts, or is too large.
std::optional<NotificationInfo> readInfo(sd_bus_message& message) {
    NotificationInfo info;
    std::size_t textBytes = 0;
    int found = sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "{ss}");
    const char *key = nullptr, *value = nullptr;
    while (found > 0 && (found = sd_bus_message_read(&message, "{ss}", &key, &value)) > 0) {
        const auto entry = info.insert_or_assign(key, value).first;
        textBytes += entry->first.size() + entry->second.size();
        if (info.size() > kMostEntries || textBytes > kMostTextBytes)
            return std::nullopt;
    }
    return found < 0 ? std::nullopt : std::optional(std::move(info));
}

}  // namespace

struct LinuxDistributedNotifications::Letter {
    std::string name;
    NotificationInfo info;
    bool isFromOthers;
};

LinuxDistributedNotifications::LinuxDistributedNotifications(MainQueue& queue,
                                                             BusConnection& sessionBus)
    : queue_(queue), bus_(sessionBus) {}

void LinuxDistributedNotifications::post(std::string_view name, const NotificationInfo& info) {
    deliverLocally(name, info);
    const BusMessage message = bus_.newSignal(everybody());
    if (!message || !write(*message, std::string(name), info))
        return;
    bus_.send(*message);
    bus_.flush(kFlushSeconds);
}

Observation LinuxDistributedNotifications::observe(std::string name,
                                                   NotificationCenter::Observer observer) {
    listen();
    return observers_.observe(std::move(name), std::move(observer));
}

void LinuxDistributedNotifications::deliverLocally(std::string_view name,
                                                   const NotificationInfo& info) {
    enqueue(std::make_unique<const Letter>(Letter{std::string(name), info, false}));
}

/// From the first observer on; a program that only posts is never woken.
void LinuxDistributedNotifications::listen() {
    if (std::exchange(listens_, true))
        return;
    busReturns_ = bus_.onReturn([this] { subscribe(); });
    subscribe();
}

void LinuxDistributedNotifications::subscribe() {
    subscription_ =
        bus_.onSignal(everybody(), [this](sd_bus_message& message) { receive(message); });
}

void LinuxDistributedNotifications::receive(sd_bus_message& message) {
    if (bus_.isOwn(message) || sd_bus_message_has_signature(&message, "sa{ss}") <= 0)
        return;
    const char* name = nullptr;
    if (sd_bus_message_read(&message, "s", &name) <= 0)
        return;
    if (auto info = readInfo(message))
        enqueue(std::make_unique<const Letter>(Letter{name, *std::move(info), true}));
}

void LinuxDistributedNotifications::enqueue(std::unique_ptr<const Letter> letter) {
    queue_.async([handle = weakSource_.handle(), letter = std::move(letter)] {
        if (auto* const self = handle.get())
            self->deliver(*letter);
    });
}

void LinuxDistributedNotifications::deliver(const Letter& letter) {
    if (letter.isFromOthers && arrived_)
        arrived_();
    observers_.post(letter.name, letter.info);
}

}  // namespace vantor
