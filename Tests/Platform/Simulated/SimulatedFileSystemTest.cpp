#include "Platform/Simulated/SimulatedFileSystem.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using simulated::SimulatedMachine;

class SimulatedFileSystemTest : public testing::Test {
protected:
    SimulatedFileSystemTest() { files.createFile(path); }

    test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "file";
    SimulatedMachine machine;
    simulated::SimulatedFileSystem& files = machine.fileSystem;
};

TEST_F(SimulatedFileSystemTest, DatesAreTheScriptedClocks) {
    machine.run(10);
    std::error_code error;
    files.openForAppending(path, error)->append("x");
    EXPECT_EQ(files.creationDate(path), SimulatedMachine::kStart);
    EXPECT_EQ(files.modificationDate(path), SimulatedMachine::kStart + 10);
}

TEST_F(SimulatedFileSystemTest, WhoWatchesHearsOfADeletionAndOfARename) {
    files.createFile(folder / "second");
    int gone = 0;
    const auto first = files.watch(path, [&] { ++gone; });
    const auto second = files.watch(folder / "second", [&] { gone += 10; });
    files.deleteFile(path);
    files.moveFile(folder / "second", folder / "third");
    EXPECT_EQ(gone, 0);
    machine.run(0);
    EXPECT_EQ(gone, 11);
}

TEST_F(SimulatedFileSystemTest, AWatchThatEndedHearsNothing) {
    int gone = 0;
    files.watch(path, [&] { ++gone; }).reset();
    files.deleteFile(path);
    machine.run(0);
    EXPECT_EQ(gone, 0);
}

TEST_F(SimulatedFileSystemTest, AFullDiskTakesNothing) {
    std::error_code error;
    const auto file = files.openForAppending(path, error);
    files.setFull(true);
    EXPECT_EQ(file->append("x"), std::errc::no_space_on_device);
    EXPECT_EQ(file->offset(), 0U);
}

TEST_F(SimulatedFileSystemTest, WithoutAttributesNoMarkIsSet) {
    files.setKeepsAttributes(false);
    EXPECT_EQ(files.setAttribute(path, "mark"), std::errc::not_supported);
    EXPECT_FALSE(files.hasAttribute(path, "mark"));
}

}  // namespace
}  // namespace vantor
