#include "Platform/Linux/LinuxAppearance.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Tests/Support/BusTest.h"

namespace vantor {
namespace {

using test::BusPeer;
using test::KeptLog;
using test::runUntil;
using test::settle;
using testing::ElementsAre;
using testing::IsEmpty;

const BusAddressee kChanged{.peer = "",
                            .path = "/org/freedesktop/portal/desktop",
                            .interface = "org.freedesktop.portal.Settings",
                            .member = "SettingChanged"};
constexpr const char* kSpace = "org.freedesktop.appearance";

/// A desktop portal that has these settings.
class Portal {
public:
    Portal(LinuxMainQueue& queue, const std::string& address,
           std::map<std::string, std::uint32_t> settings)
        : settings_(std::move(settings)), peer_(queue, address, "org.freedesktop.portal.Desktop") {
        peer_.setAnswer([this](sd_bus_message* call) { return answer(call); });
    }
    void change(const char* space, const char* key, std::uint32_t value) {
        peer_.emitSignal(kChanged, "ssv", space, key, "u", value);
    }
    BusPeer& peer() { return peer_; }

private:
    int answer(sd_bus_message* call) {
        const char *space = nullptr, *key = nullptr;
        if (sd_bus_message_read(call, "ss", &space, &key) <= 0 || space != std::string(kSpace) ||
            !settings_.contains(key))
            return sd_bus_reply_method_errorf(call, "org.freedesktop.portal.Error.NotFound", "no");
        return sd_bus_reply_method_return(call, "v", "v", "u", settings_.at(key));
    }

    std::map<std::string, std::uint32_t> settings_;
    BusPeer peer_;
};

class LinuxAppearanceTest : public test::BusTest {
protected:
    /// Waits until whatever the bus had for us is told.
    void settleAll() {
        queue.runOnce(0);
        ASSERT_TRUE(settle(queue, connection));
        queue.runOnce(0);
    }

    BusConnection connection = connectionTo(bus.address());
    LinuxDistributedNotifications notifications{queue, connection};
    Observation theme = notes(notifications, kInterfaceThemeChanged);
    Observation contrast = notes(notifications, kIncreaseContrastChanged);
};

TEST_F(LinuxAppearanceTest, PortalsAnswersAreTakenOverAndTold) {
    const Portal portal(queue, bus.address(), {{"color-scheme", 1}, {"contrast", 1}});
    const LinuxAppearance appearance(queue, connection, notifications);
    EXPECT_FALSE(appearance.isDark());
    EXPECT_TRUE(runUntil(queue, [&] { return heard.size() == 2; }));
    EXPECT_TRUE(appearance.isDark());
    EXPECT_TRUE(appearance.increasesContrast());
    EXPECT_THAT(heard, ElementsAre(kInterfaceThemeChanged, kIncreaseContrastChanged));
}

TEST_F(LinuxAppearanceTest, OtherValuesMeanLightAndPlainAndAreNoChange) {
    const Portal portal(queue, bus.address(), {{"color-scheme", 2}, {"contrast", 0}});
    const LinuxAppearance appearance(queue, connection, notifications);
    settleAll();
    settleAll();
    EXPECT_FALSE(appearance.isDark());
    EXPECT_FALSE(appearance.increasesContrast());
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(LinuxAppearanceTest, PortalWithoutTheseSettingsMeansLightAndPlain) {
    const Portal portal(queue, bus.address(), {});
    const LinuxAppearance appearance(queue, connection, notifications);
    settleAll();
    settleAll();
    EXPECT_FALSE(appearance.isDark());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(LinuxAppearanceTest, ChangesAreTakenOverAndToldOnce) {
    Portal portal(queue, bus.address(), {{"color-scheme", 0}, {"contrast", 0}});
    const LinuxAppearance appearance(queue, connection, notifications);
    settleAll();
    for (const std::uint32_t value : {1u, 1u, 0u})
        portal.change(kSpace, "color-scheme", value);
    portal.change(kSpace, "contrast", 1);
    EXPECT_TRUE(runUntil(queue, [&] { return heard.size() == 3; }));
    EXPECT_THAT(heard, ElementsAre(kInterfaceThemeChanged, kInterfaceThemeChanged,
                                   kIncreaseContrastChanged));
    EXPECT_FALSE(appearance.isDark());
    EXPECT_TRUE(appearance.increasesContrast());
}

TEST_F(LinuxAppearanceTest, SignalsThatMeanSomethingElseAreIgnored) {
    Portal portal(queue, bus.address(), {{"color-scheme", 0}, {"contrast", 0}});
    const LinuxAppearance appearance(queue, connection, notifications);
    settleAll();
    portal.change("org.gnome.desktop.interface", "color-scheme", 1);
    portal.change(kSpace, "accent-color", 1);
    portal.peer().emitSignal(kChanged, "s", kSpace);
    portal.peer().emitSignal(kChanged, "ssv", kSpace, "color-scheme", "s", "1");
    portal.peer().emitSignal(kChanged, "ssu", kSpace, "color-scheme", 1);
    BusPeer(queue, bus.address())
        .emitSignal(kChanged, "ssv", kSpace, "color-scheme", "u", 1);  // not the portal
    portal.change(kSpace, "contrast", 1);
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_FALSE(appearance.isDark());
    EXPECT_THAT(heard, ElementsAre(kIncreaseContrastChanged));
}

TEST_F(LinuxAppearanceTest, NothingIsAskedBeforeTheQueueRuns) {
    KeptLog otherLog;
    BusConnection none(queue, otherLog, {"Session bus", "all is light"}, std::nullopt);
    const LinuxAppearance appearance(queue, none, notifications);
    EXPECT_FALSE(appearance.isDark());
    EXPECT_THAT(otherLog.lines, IsEmpty());
    queue.runOnce(0);
    EXPECT_FALSE(appearance.isDark());
    EXPECT_THAT(otherLog.lines, ElementsAre("Session bus: there is none; all is light"));
}

}  // namespace
}  // namespace vantor
