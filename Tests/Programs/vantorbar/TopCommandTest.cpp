// Runs the real program, with the real daemon on a bus of the test's own.

#include <cstdint>
#include <filesystem>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Tests/Support/Child.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using test::Child;
using testing::HasSubstr;
using testing::StartsWith;

class TopCommandTest : public testing::Test {
protected:
    /// What it writes, errors too, with such an address of the session's bus.
    Child top(const std::string& arguments, const std::string& address) const {
        return {{"/bin/sh", "-c", fmt::format("exec {} top {} 2>&1", VANTOR_PROGRAM, arguments)},
                {"HOME=" + home.path().string(), "PATH=/usr/bin:/bin", "TERM=dumb",
                 "DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + (home / "none").string(),
                 "DBUS_SESSION_BUS_ADDRESS=" + address}};
    }

    test::TemporaryFolder home;
};

class TopCommandWithDaemonTest : public TopCommandTest {
protected:
    test::PrivateBus bus{std::filesystem::path(VANTOR_SERVICE_DIR)};
};

TEST_F(TopCommandWithDaemonTest, JSONIsALineForEachList) {
    Child program = top("--json --count 2", bus.address());
    for (int list = 0; list < 2; ++list) {
        const auto json = nlohmann::json::parse(program.line());
        EXPECT_GT(json.at("time"), 0);
        ASSERT_FALSE(json.at("processes").empty());
        for (const auto& process : json["processes"]) {
            EXPECT_TRUE(process.at("name").is_string());
            EXPECT_GE(process.at("percent"), 0);
        }
    }
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 0);
}

TEST_F(TopCommandWithDaemonTest, TablesFollowOneAnotherIntoAPipe) {
    Child program = top("--count 2", bus.address());
    const std::string text = program.rest();
    EXPECT_THAT(text, StartsWith("  CPU %  PROCESS\n"));
    EXPECT_THAT(text, HasSubstr("\n\n  CPU %  PROCESS\n"));
    EXPECT_EQ(program.status(), 0);
}

TEST_F(TopCommandTest, WithoutABusOneLineSaysSo) {
    Child program = top("", "unix:path=" + (home / "none").string());
    EXPECT_EQ(program.line(), "vantorbar: no daemon on a message bus lists processes");
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 1);
}

TEST_F(TopCommandTest, WithoutADaemonOneLineSaysSo) {
    const test::PrivateBus bus;
    Child program = top("--json", bus.address());
    EXPECT_EQ(program.line(), "vantorbar: no daemon on a message bus lists processes");
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 1);
}

TEST_F(TopCommandTest, BusThatSaysNothingIsWaitedForInVainOnlySoLong) {
    test::PrivateBus bus;
    bus.freeze();
    Child program = top("", bus.address());
    EXPECT_EQ(program.line(), "vantorbar: no list of processes came within 5 seconds");
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.status(), 1);
}

TEST_F(TopCommandTest, NoListsAtAllAreWrongUsage) {
    Child program = top("--count 0", "");
    EXPECT_THAT(program.line(), StartsWith("vantorbar: "));
    EXPECT_THAT(program.line(), StartsWith("Usage: vantorbar top "));
    EXPECT_EQ(program.status(), 2);
}

}  // namespace
}  // namespace vantor
