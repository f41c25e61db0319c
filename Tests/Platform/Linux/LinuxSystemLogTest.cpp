#include "Platform/Linux/LinuxSystemLog.h"

#include <array>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

#include "Platform/Linux/Descriptor.h"

namespace vantor {
namespace {

std::string availableFrom(const Descriptor& descriptor) {
    std::array<char, 256> bytes{};
    const ssize_t count = read(descriptor.get(), bytes.data(), bytes.size());
    return count > 0 ? std::string(bytes.data(), static_cast<std::size_t>(count)) : std::string{};
}

TEST(LinuxSystemLogTest, TerminalGetsTheLinesAsTheyAre) {
    const Descriptor outer(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK));
    ASSERT_TRUE(outer);
    ASSERT_EQ(grantpt(outer.get()) | unlockpt(outer.get()), 0);
    const Descriptor terminal(open(ptsname(outer.get()), O_RDWR | O_NOCTTY));
    ASSERT_TRUE(terminal);
    termios mode{};
    ASSERT_EQ(tcgetattr(terminal.get(), &mode), 0);
    cfmakeraw(&mode);
    ASSERT_EQ(tcsetattr(terminal.get(), TCSANOW, &mode), 0);

    LinuxSystemLog(terminal.get()).write("one %s\ntwo");

    EXPECT_EQ(availableFrom(outer), "vantorbar: one %s\ntwo\n");
}

TEST(LinuxSystemLogTest, WhatIsNoTerminalStaysQuiet) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
    const Descriptor reading(ends[0]), writing(ends[1]);
    LinuxSystemLog(writing.get()).write("for the journal %n");
    EXPECT_EQ(availableFrom(reading), "");
}

}  // namespace
}  // namespace vantor
