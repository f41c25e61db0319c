#include "Shared/ResourceBundle.h"

#include <fstream>

#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

TEST(ResourceBundleTest, MissingDirectoryGivesNoBundle) {
    const test::TemporaryFolder folder;
    EXPECT_FALSE(ResourceBundle::open(folder / "missing.bundle"));
}

TEST(ResourceBundleTest, ImageIsFoundByItsNameWithOrWithoutExtension) {
    const test::TemporaryFolder folder;
    std::ofstream(folder / "x.png") << "x";
    fs::create_directories(folder / "Contents/Resources");
    std::ofstream(folder / "Contents/Resources/y.png") << "y";
    const auto bundle = ResourceBundle::open(folder.path());
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->pathForImageResource("x.png"), folder / "x.png");
    EXPECT_EQ(bundle->pathForImageResource("x"), folder / "x.png");
    EXPECT_EQ(bundle->pathForImageResource("x.tiff"), folder / "x.png");
    EXPECT_EQ(bundle->pathForImageResource("y"), folder / "Contents/Resources/y.png");
    EXPECT_EQ(bundle->pathForImageResource("z"), std::nullopt);
    EXPECT_EQ(bundle->pathForImageResource(""), std::nullopt);
}

}  // namespace
}  // namespace vantor
