#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Foundation/NotificationCenter.h"
#include "Platform/Linux/BusConnection.h"
#include "Tests/Support/BusPeer.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"

namespace vantor::test {

/// A main queue and a message bus of the test's own, with notes of what was heard and logged.
class BusTest : public testing::Test {
protected:
    BusConnection connectionTo(std::optional<std::string> address) {
        return {queue, log, {"Test bus", "tests stand still"}, std::move(address)};
    }
    /// Notes the names of what `center` posts.
    template <class Center>
    Observation notes(Center& center, std::string_view name) {
        return center.observe(std::string(name), [this](const Notification& notification) {
            heard.emplace_back(notification.name);
        });
    }

    LinuxMainQueue queue;
    KeptLog log;
    PrivateBus bus;
    std::vector<std::string> heard;
};

}  // namespace vantor::test
