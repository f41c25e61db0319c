#include "Platform/Linux/LinuxFileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "Platform/Linux/LinuxFileWatches.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class LinuxFileSystemTest : public testing::Test {
protected:
    test::TemporaryFolder folder;
    LinuxMainQueue queue;
    LinuxFileWatches watches{queue};
    LinuxFileSystem files{watches};
};

TEST_F(LinuxFileSystemTest, AFullDeviceIsAnError) {
    std::error_code error;
    const auto full = files.openForAppending("/dev/full", error);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->append("x"), std::errc::no_space_on_device);
    EXPECT_EQ(full->offset(), 0U);
}

TEST_F(LinuxFileSystemTest, APipeWithoutAReaderIsNotWaitedFor) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::error_code error;
    EXPECT_EQ(files.openForAppending(folder / "pipe", error), nullptr);
    EXPECT_TRUE(error);
}

TEST_F(LinuxFileSystemTest, AttributesAreTheUsersOwn) {
    files.createFile(folder / "file");
    ASSERT_FALSE(files.setAttribute(folder / "file", "vantor.log.archived"));
    EXPECT_EQ(getxattr((folder / "file").c_str(), "user.vantor.log.archived", nullptr, 0), 0);
}

TEST_F(LinuxFileSystemTest, WhereTheSystemHasNoAttributesItSaysSo) {
    EXPECT_EQ(files.setAttribute("/proc/self/comm", "mark"), std::errc::not_supported);
}

TEST_F(LinuxFileSystemTest, WhatOthersAppendMeanwhileStays) {
    files.createFile(folder / "file");
    std::error_code error;
    const auto one = files.openForAppending(folder / "file", error);
    const auto other = files.openForAppending(folder / "file", error);
    one->append("a");
    other->append("b");
    one->append("c");
    EXPECT_EQ(one->offset(), 3U);
    EXPECT_EQ(std::filesystem::file_size(folder / "file"), 3U);
}

}  // namespace
}  // namespace vantor
