#include "Platform/Linux/KernelText.h"

#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

TEST(KernelTextTest, BlanksAndLineEndsAroundItAreCutOff) {
    const TemporaryFolder folder;
    writeText(folder / "name", " \tModel 5,1  \n");
    EXPECT_EQ(trimmedTextOf(folder / "name"), "Model 5,1");
}

TEST(KernelTextTest, FileOfBlanksIsAnEmptyText) {
    const TemporaryFolder folder;
    writeText(folder / "name", " \n");
    EXPECT_EQ(trimmedTextOf(folder / "name"), "");
}

TEST(KernelTextTest, MissingFileAndFolderAreNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(trimmedTextOf(folder / "name"), std::nullopt);
    EXPECT_EQ(trimmedTextOf(folder.path()), std::nullopt);
}

}  // namespace
}  // namespace vantor::test
