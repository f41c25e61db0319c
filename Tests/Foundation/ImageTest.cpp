#include "Foundation/Image.h"

#include <fstream>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

/// Straight, not premultiplied: red, green, blue, alpha of every pixel.
void writePNG(const std::filesystem::path& file, unsigned width, unsigned height,
              const std::vector<unsigned char>& pixels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGBA;
    ASSERT_NE(png_image_write_to_file(&image, file.c_str(), 0, pixels.data(), 0, nullptr), 0);
}

class ImageTest : public testing::Test {
protected:
    test::TemporaryFolder folder;
};

TEST_F(ImageTest, PixelsArePremultipliedWithAlphaHighest) {
    writePNG(folder / "x.png", 2, 2,
             {255, 128, 0, 255, 255, 128, 0, 128,  //
              10, 20, 30, 0, 0, 0, 0, 255});
    const auto image = Image::fromFile(folder / "x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(std::vector<std::uint32_t>(image->pixels().begin(), image->pixels().end()),
              (std::vector<std::uint32_t>{0xFFFF8000, 0x80804000, 0x00000000, 0xFF000000}));
}

TEST_F(ImageTest, NamesEndingTellsTheScale) {
    const std::vector<unsigned char> pixels(6 * 12 * 4, 255);
    for (const auto& [name, size] :
         {std::pair{"x.png", Size{6, 12}}, {"x@2x.png", Size{3, 6}}, {"x@3x.png", Size{2, 4}}}) {
        writePNG(folder / name, 6, 12, pixels);
        const auto image = Image::fromFile(folder / name);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->size(), size) << name;
        EXPECT_EQ(image->widthPixels(), 6);
        EXPECT_EQ(image->heightPixels(), 12);
    }
}

TEST_F(ImageTest, NameCanBeSet) {
    writePNG(folder / "x.png", 1, 1, {0, 0, 0, 0});
    const auto image = Image::fromFile(folder / "x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->name(), "");
    image->setName("x");
    EXPECT_EQ(image->name(), "x");
}

TEST_F(ImageTest, WhatIsNoImageGivesNothing) {
    std::ofstream(folder / "words.png") << "not a picture";
    std::ofstream(folder / "empty.png");
    std::filesystem::create_directory(folder / "folder.png");
    for (const char* const name : {"missing.png", "words.png", "empty.png", "folder.png"})
        EXPECT_EQ(Image::fromFile(folder / name), nullptr) << name;
}

TEST_F(ImageTest, CutFileGivesNothing) {
    writePNG(folder / "x.png", 64, 64, std::vector<unsigned char>(64 * 64 * 4, 77));
    std::filesystem::resize_file(folder / "x.png",
                                 std::filesystem::file_size(folder / "x.png") / 2);
    EXPECT_EQ(Image::fromFile(folder / "x.png"), nullptr);
}

TEST_F(ImageTest, ImageOfTooManyPixelsGivesNothing) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = 8192;
    image.height = 2049;
    image.format = PNG_FORMAT_GRAY;
    const std::vector<unsigned char> pixels(std::size_t{8192} * 2049, 0);
    ASSERT_NE(png_image_write_to_file(&image, (folder / "large.png").c_str(), 0, pixels.data(), 0,
                                      nullptr),
              0);
    EXPECT_EQ(Image::fromFile(folder / "large.png"), nullptr);
}

}  // namespace
}  // namespace vantor
