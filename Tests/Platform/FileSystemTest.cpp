// What every file system does, the real one and the scripted one.

#include "Platform/FileSystem.h"

#include <fstream>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxFileWatches.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

constexpr std::string_view kMark = "vantor.test.mark";

struct LinuxWorld {
    LinuxMainQueue queue;
    LinuxFileWatches watches{queue};
    LinuxFileSystem files{watches};

    FileSystem& fileSystem() { return files; }
};

struct SimulatedWorld {
    simulated::SimulatedMachine machine;

    FileSystem& fileSystem() { return machine.fileSystem; }
};

template <class World>
class FileSystemTest : public testing::Test {
protected:
    std::string contents() const {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::unique_ptr<AppendingFile> open() {
        std::error_code error;
        return files.openForAppending(path, error);
    }

    test::TemporaryFolder folder;
    const std::filesystem::path path = folder / "file";
    World world;
    FileSystem& files = world.fileSystem();
};

using Worlds = testing::Types<LinuxWorld, SimulatedWorld>;
TYPED_TEST_SUITE(FileSystemTest, Worlds);

TYPED_TEST(FileSystemTest, AFileIsMadeOnce) {
    EXPECT_FALSE(this->files.createFile(this->path));
    EXPECT_EQ(std::filesystem::file_size(this->path), 0U);
    EXPECT_EQ(this->files.createFile(this->path), std::errc::file_exists);
}

TYPED_TEST(FileSystemTest, WithoutItsFolderNoFileIsMade) {
    EXPECT_EQ(this->files.createFile(this->folder / "none/file"),
              std::errc::no_such_file_or_directory);
}

TYPED_TEST(FileSystemTest, WhatIsAppendedGoesBehindWhatIsThere) {
    std::ofstream(this->path) << "one";
    const auto file = this->open();
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->offset(), 3U);
    EXPECT_FALSE(file->append("two"));
    EXPECT_FALSE(file->append(""));
    EXPECT_EQ(file->offset(), 6U);
    EXPECT_FALSE(file->synchronise());
    EXPECT_EQ(this->contents(), "onetwo");
}

TYPED_TEST(FileSystemTest, AFileThatIsNotThereIsNotOpened) {
    std::error_code error;
    EXPECT_EQ(this->files.openForAppending(this->path, error), nullptr);
    EXPECT_EQ(error, std::errc::no_such_file_or_directory);
    EXPECT_FALSE(std::filesystem::exists(this->path));
}

TYPED_TEST(FileSystemTest, AFolderIsNotOpened) {
    std::error_code error;
    EXPECT_EQ(this->files.openForAppending(this->folder.path(), error), nullptr);
    EXPECT_EQ(error, std::errc::is_a_directory);
}

TYPED_TEST(FileSystemTest, AMarkIsSetAndTakenOff) {
    this->files.createFile(this->path);
    EXPECT_FALSE(this->files.hasAttribute(this->path, kMark));
    EXPECT_FALSE(this->files.setAttribute(this->path, kMark));
    EXPECT_FALSE(this->files.setAttribute(this->path, kMark));
    EXPECT_TRUE(this->files.hasAttribute(this->path, kMark));
    EXPECT_FALSE(this->files.removeAttribute(this->path, kMark));
    EXPECT_FALSE(this->files.hasAttribute(this->path, kMark));
}

TYPED_TEST(FileSystemTest, AMarkThatIsNotThereIsNotTakenOff) {
    this->files.createFile(this->path);
    EXPECT_EQ(this->files.removeAttribute(this->path, kMark), std::errc::no_message_available);
}

TYPED_TEST(FileSystemTest, AFileThatIsNotThereBearsNoMark) {
    EXPECT_EQ(this->files.setAttribute(this->path, kMark), std::errc::no_such_file_or_directory);
    EXPECT_EQ(this->files.removeAttribute(this->path, kMark), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(this->files.hasAttribute(this->path, kMark));
}

TYPED_TEST(FileSystemTest, AMarkGoesWithARenamedFile) {
    this->files.createFile(this->path);
    this->files.setAttribute(this->path, kMark);
    EXPECT_FALSE(this->files.rename(this->path, this->folder / "other"));
    EXPECT_TRUE(this->files.hasAttribute(this->folder / "other", kMark));
    EXPECT_FALSE(this->files.hasAttribute(this->path, kMark));
}

TYPED_TEST(FileSystemTest, AFileThatIsNotThereIsNotRenamed) {
    EXPECT_TRUE(this->files.rename(this->path, this->folder / "other"));
}

TYPED_TEST(FileSystemTest, AFileHasItsDates) {
    EXPECT_EQ(this->files.creationDate(this->path), std::nullopt);
    EXPECT_EQ(this->files.modificationDate(this->path), std::nullopt);
    this->files.createFile(this->path);
    EXPECT_GT(this->files.modificationDate(this->path).value_or(0), 1e9);
    const auto created = this->files.creationDate(this->path);
    // Not every file system keeps it.
    EXPECT_LE(created.value_or(0), this->files.modificationDate(this->path).value_or(0));
}

}  // namespace
}  // namespace vantor
