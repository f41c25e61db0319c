#include "Platform/Linux/KernelFile.h"

#include <string>

#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

TEST(KernelFileTest, EachReadingGivesTheTextAsItIsNow) {
    const TemporaryFolder folder;
    writeText(folder / "stat", "before");
    KernelFile file(folder / "stat");
    EXPECT_EQ(file.read(), "before");
    writeText(folder / "stat", "then");
    EXPECT_EQ(file.read(), "then");
}

TEST(KernelFileTest, MissingFileIsNoReadingUntilItIsThere) {
    const TemporaryFolder folder;
    KernelFile file(folder / "stat");
    EXPECT_EQ(file.read(), std::nullopt);
    writeText(folder / "stat", "here");
    EXPECT_EQ(file.read(), "here");
}

TEST(KernelFileTest, FileThatCannotBeReadIsNoReading) {
    const TemporaryFolder folder;
    KernelFile file(folder.path());  // a folder opens, but doesn't read
    EXPECT_EQ(file.read(), std::nullopt);
    EXPECT_EQ(file.read(), std::nullopt);
}

TEST(KernelFileTest, EmptyFileIsAnEmptyText) {
    const TemporaryFolder folder;
    writeText(folder / "stat", "");
    EXPECT_EQ(KernelFile(folder / "stat").read(), "");
}

TEST(KernelFileTest, TextThatGrewMuchLargerIsWhole) {
    const TemporaryFolder folder;
    writeText(folder / "stat", "small");
    KernelFile file(folder / "stat");
    const std::string large(300'001, 'x');
    writeText(folder / "stat", large);
    EXPECT_EQ(file.read(), large);
}

TEST(KernelFileTest, EndlessFileIsCut) {
    KernelFile file("/dev/zero");
    const auto text = file.read();
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), std::size_t{16} << 20);
}

TEST(KernelFileTest, ReadingATextThatNearlyDoubledDoesNotAllocate) {
    const TemporaryFolder folder;
    writeText(folder / "stat", std::string(50'000, 'x'));
    KernelFile file(folder / "stat");
    writeText(folder / "stat", std::string(99'999, 'x'));
    const AllocationCounter counter;
    const auto text = file.read();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_EQ(text.value_or("").size(), 99'999u);
}

}  // namespace
}  // namespace vantor::test
