#include "Platform/Linux/LinuxThisProcess.h"

#include <thread>

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

namespace vantor {
namespace {

TEST(LinuxThisProcessTest, BearsTheNameOfItsProgram) {
    EXPECT_FALSE(LinuxThisProcess().name().empty());
    EXPECT_EQ(LinuxThisProcess().name().find('/'), std::string::npos);
}

TEST(LinuxThisProcessTest, EachThreadHasItsNumberAndItsName) {
    const LinuxThisProcess process;
    std::uint32_t otherID = 0;
    std::string otherName;
    std::jthread([&] {
        pthread_setname_np(pthread_self(), "some thread");
        otherID = process.threadID();
        otherName = process.threadName();
    }).join();
    EXPECT_EQ(process.threadID(), static_cast<std::uint32_t>(getpid()));
    EXPECT_NE(otherID, process.threadID());
    EXPECT_EQ(otherName, "some thread");
}

}  // namespace
}  // namespace vantor
