#include "Platform/Linux/LinuxAppearance.h"

#include <optional>
#include <string_view>

#include <systemd/sd-bus.h>

namespace vantor {
namespace {

constexpr const char* kNamespace = "org.freedesktop.appearance";
constexpr int kDeepestVariant = 4;

BusAddressee portal(std::string member) {
    return {.peer = "org.freedesktop.portal.Desktop",
            .path = "/org/freedesktop/portal/desktop",
            .interface = "org.freedesktop.portal.Settings",
            .member = std::move(member)};
}

/// The number in a variant, or in a variant in a variant, which is how Read answers.
std::optional<std::uint32_t> readNumber(sd_bus_message& message) {
    char type = 0;
    const char* contents = nullptr;
    for (int depth = 0; depth < kDeepestVariant; ++depth) {
        if (sd_bus_message_peek_type(&message, &type, &contents) <= 0)
            return std::nullopt;
        if (type != SD_BUS_TYPE_VARIANT)
            break;
        if (sd_bus_message_enter_container(&message, type, contents) <= 0)
            return std::nullopt;
    }
    std::uint32_t number = 0;
    const bool isNumber =
        type == SD_BUS_TYPE_UINT32 && sd_bus_message_read_basic(&message, type, &number) > 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

/// One of the portal's settings. It has several values, of which 1 is the one that we know.
struct LinuxAppearance::Setting {
    const char* key;
    bool LinuxAppearance::*value;
    std::string_view changed;
};

const LinuxAppearance::Setting LinuxAppearance::kColourScheme{
    "color-scheme", &LinuxAppearance::isDark_, kInterfaceThemeChanged};
const LinuxAppearance::Setting LinuxAppearance::kContrast{
    "contrast", &LinuxAppearance::increasesContrast_, kIncreaseContrastChanged};

LinuxAppearance::LinuxAppearance(MainQueue& queue, BusConnection& sessionBus,
                                 LinuxDistributedNotifications& notifications)
    : bus_(sessionBus), notifications_(notifications) {
    queue.async([handle = weakSource_.handle()] {
        if (auto* const self = handle.get())
            self->start();
    });
}

void LinuxAppearance::start() {
    busReturns_ = bus_.onReturn([this] { askPortal(); });
    askPortal();
}

/// Subscribes first, so that no change falls between the answers and the first signal.
void LinuxAppearance::askPortal() {
    changes_ = bus_.onSignal(
        portal("SettingChanged"), [this](sd_bus_message& message) { settingChanged(message); },
        kNamespace);
    colourSchemeReply_ = ask(kColourScheme);
    contrastReply_ = ask(kContrast);
}

BusConnection::Slot LinuxAppearance::ask(const Setting& setting) {
    const BusMessage message = bus_.newCall(portal("Read"));
    if (!message || sd_bus_message_append(message.get(), "ss", kNamespace, setting.key) < 0)
        return {};
    return bus_.call(*message, [this, &setting](sd_bus_message& reply) {
        if (sd_bus_message_is_method_error(&reply, nullptr) == 0)
            readValue(setting, reply);
    });
}

void LinuxAppearance::settingChanged(sd_bus_message& message) {
    const char *space = nullptr, *key = nullptr;
    if (sd_bus_message_has_signature(&message, "ssv") <= 0 ||
        sd_bus_message_read(&message, "ss", &space, &key) <= 0 ||
        std::string_view(space) != kNamespace)
        return;
    for (const Setting* setting : {&kColourScheme, &kContrast})
        if (std::string_view(key) == setting->key)
            readValue(*setting, message);
}

void LinuxAppearance::readValue(const Setting& setting, sd_bus_message& message) {
    const auto number = readNumber(message);
    if (!number || this->*setting.value == (*number == 1))
        return;
    this->*setting.value = *number == 1;
    notifications_.deliverLocally(setting.changed);
}

}  // namespace vantor
