#include "Programs/vantorbar/FileDamage.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using Kind = simulated::Corruption::Kind;

class FileDamageTest : public testing::Test {
protected:
    FileDamageTest() { std::ofstream(file) << "0123456789"; }
    std::string contents() {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    test::TemporaryFolder folder;
    const std::filesystem::path file = folder / "cpu.db";
};

TEST_F(FileDamageTest, ZerosKeepTheSize) {
    EXPECT_TRUE(spoilFile(file, Kind::zeros));
    EXPECT_EQ(contents(), std::string(10, '\0'));
}

TEST_F(FileDamageTest, TextKeepsTheSize) {
    EXPECT_TRUE(spoilFile(file, Kind::text));
    EXPECT_EQ(contents(), "This is no");
}

TEST_F(FileDamageTest, TheFirstHalfIsLeft) {
    EXPECT_TRUE(spoilFile(file, Kind::truncated));
    EXPECT_EQ(contents(), "01234");
}

TEST_F(FileDamageTest, NothingIsLeft) {
    EXPECT_TRUE(spoilFile(file, Kind::empty));
    EXPECT_EQ(contents(), "");
}

TEST_F(FileDamageTest, AFileThatIsNotThereCannotBeSpoilt) {
    EXPECT_FALSE(spoilFile(folder / "gpu.db", Kind::empty));
    EXPECT_FALSE(spoilFile(folder.path(), Kind::zeros));
    EXPECT_FALSE(std::filesystem::exists(folder / "gpu.db"));
}

}  // namespace
}  // namespace vantor
