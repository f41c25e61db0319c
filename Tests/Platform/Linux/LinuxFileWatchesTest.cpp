#include "Platform/Linux/LinuxFileWatches.h"

#include <fstream>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class LinuxFileWatchesTest : public testing::Test {
protected:
    LinuxFileWatchesTest() { std::ofstream(path) << "x"; }
    std::unique_ptr<FileWatch> watch() {
        return watches.add(path, [this] { ++gone; });
    }
    /// Serves what the kernel has told so far.
    void serve() {
        bool served = false;
        queue.after(0.01, [&served] { served = true; });
        test::runUntil(queue, [&served] { return served; });
    }

    test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "file";
    LinuxMainQueue queue;
    LinuxFileWatches watches{queue};
    int gone = 0;
};

TEST_F(LinuxFileWatchesTest, ADeletionIsToldThoughTheFileIsHeldOpen) {
    const std::ofstream holder(path, std::ios::app);
    const auto watched = watch();
    std::filesystem::remove(path);
    EXPECT_TRUE(test::runUntil(queue, [&] { return gone == 1; }));
}

TEST_F(LinuxFileWatchesTest, ARenameIsTold) {
    const auto watched = watch();
    std::filesystem::rename(path, folder / "other");
    EXPECT_TRUE(test::runUntil(queue, [&] { return gone == 1; }));
}

TEST_F(LinuxFileWatchesTest, ThatItsFolderGoesIsTold) {
    const auto watched = watch();
    std::filesystem::remove_all(folder.path());
    EXPECT_TRUE(test::runUntil(queue, [&] { return gone == 1; }));
}

TEST_F(LinuxFileWatchesTest, AFileInItsPlaceIsNotTheSame) {
    const auto watched = watch();
    std::ofstream(folder / "other") << "y";
    std::filesystem::rename(folder / "other", path);
    EXPECT_TRUE(test::runUntil(queue, [&] { return gone == 1; }));
}

TEST_F(LinuxFileWatchesTest, OtherChangesAreNotTold) {
    const auto watched = watch();
    std::ofstream(path, std::ios::app) << "more";
    chmod(path.c_str(), 0600);
    serve();
    EXPECT_EQ(gone, 0);
}

TEST_F(LinuxFileWatchesTest, AFileGoesOnce) {
    const auto watched = watch();
    std::filesystem::rename(path, folder / "other");
    std::filesystem::remove(folder / "other");
    serve();
    EXPECT_EQ(gone, 1);
}

TEST_F(LinuxFileWatchesTest, AWatchThatEndedHearsNothing) {
    auto watched = watch();
    watched.reset();
    std::filesystem::remove(path);
    serve();
    EXPECT_EQ(gone, 0);
}

TEST_F(LinuxFileWatchesTest, OfTwoWatchesOnAFileEachHearsForItself) {
    auto first = watch();
    const auto second = watches.add(path, [this] { gone += 10; });
    first.reset();
    std::filesystem::remove(path);
    EXPECT_TRUE(test::runUntil(queue, [&] { return gone == 10; }));
}

TEST_F(LinuxFileWatchesTest, AFileThatIsNotThereIsNotWatched) {
    EXPECT_EQ(watches.add(folder / "none", [] {}), nullptr);
}

TEST_F(LinuxFileWatchesTest, AnyThreadMayWatchAndEndAWatch) {
    std::jthread([this] {
        for (int round = 0; round < 100; ++round)
            watch().reset();
    }).join();
    std::unique_ptr<FileWatch> kept;
    std::jthread([&] { kept = watch(); }).join();
    std::filesystem::remove(path);
    EXPECT_TRUE(test::runUntil(queue, [&] { return gone == 1; }));
}

}  // namespace
}  // namespace vantor
