#include "Painting/Text.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <functional>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "Painting/Context.h"
#include "Painting/ImageSurface.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/Pictures.h"

namespace vantor::Painting {
namespace {

using namespace test;

TextAttributes ofSize(double size) { return {.font = {.size = size, .tabularDigits = true}}; }

/// The pixels that something covers.
struct Ink {
    int left = 0, top = 0, right = 0, bottom = 0;
};

std::optional<Ink> inkOf(const ImageSurface& surface) {
    std::optional<Ink> ink;
    for (int y = 0; y < surface.heightPixels(); ++y)
        for (int x = 0; x < surface.widthPixels(); ++x)
            if (surface.pixel(x, y) != 0) {
                ink = ink.value_or(Ink{x, y, x, y});
                *ink = {std::min(ink->left, x), ink->top, std::max(ink->right, x), y};
            }
    return ink;
}

ImageSurface painted(std::string_view text, const Rect& rect, const TextAttributes& attributes,
                     Origin origin, double scale = 1) {
    ImageSurface surface({100, 30}, scale);
    surface.context(origin).drawText(text, rect, attributes);
    return surface;
}

TEST(TextTest, TabularDigitsAreEquallyWide) {
    for (const double size : {8.0, 9.0, 12.0, 13.0, 16.0}) {
        const double width = sizeOfText("0", ofSize(size)).width;
        EXPECT_GT(width, 0);
        for (const char* digit : {"1", "2", "3", "4", "5", "6", "7", "8", "9"})
            EXPECT_EQ(sizeOfText(digit, ofSize(size)).width, width) << digit << " at " << size;
        EXPECT_NEAR(sizeOfText("11111", ofSize(size)).width,
                    sizeOfText("88888", ofSize(size)).width, 1e-9);
    }
}

TEST(TextTest, EmptyTextHasTheHeightOfALine) {
    const Size empty = sizeOfText("", ofSize(13)), digit = sizeOfText("0", ofSize(13));
    EXPECT_EQ(empty.width, 0);
    EXPECT_EQ(empty.height, digit.height);
    EXPECT_GT(digit.height, 13);
    EXPECT_FALSE(inkOf(painted("", {0, 0, 50, 20}, ofSize(13), Origin::lowerLeft)));
}

TEST(TextTest, BoldIsWiderAndLargerIsLarger) {
    TextAttributes bold = ofSize(12);
    bold.font.weight = Weight::bold;
    EXPECT_GT(sizeOfText("System", bold).width, sizeOfText("System", ofSize(12)).width);
    EXPECT_NEAR(sizeOfText("System", ofSize(24)).width, 2 * sizeOfText("System", ofSize(12)).width,
                0.05);
}

TEST(TextTest, SizesDoNotDependOnTheLocaleOrTheDesktopsFontSettings) {
    const Size before = sizeOfText("12.34%", ofSize(13.5));
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    const std::array settings{"GDK_DPI_SCALE", "GDK_SCALE", "QT_SCALE_FACTOR"};
    for (const char* const setting : settings)
        ASSERT_EQ(setenv(setting, "3", 1), 0);
    for (const char* const other : {"C.UTF-8", "de_DE.UTF-8", "C"}) {
        std::setlocale(LC_ALL, other);  // one that the machine lacks changes nothing
        // Asked for anew: many other texts push the first one out of what is kept.
        for (int number = 0; number < 200; ++number)
            sizeOfText(std::to_string(number), ofSize(7));
        EXPECT_EQ(sizeOfText("12.34%", ofSize(13.5)), before) << other;
    }
    for (const char* const setting : settings)
        unsetenv(setting);
    std::setlocale(LC_ALL, locale.c_str());
}

TEST(TextTest, SizesDoNotDependOnTheScreensScale) {
    const Size before = sizeOfText("Load", ofSize(13));
    painted("Load", {0, 0, 50, 20}, ofSize(13), Origin::lowerLeft, 2);
    EXPECT_EQ(sizeOfText("Load", ofSize(13)), before);
}

TEST(TextTest, TextStandsAtTheUpperEdgeAndUprightInEitherView) {
    const Size size = sizeOfText("L", ofSize(13));
    const Rect fromBelow{10, 30 - 4 - size.height, 40, size.height}, fromAbove{10, 4, 40, 1};
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const auto lower = painted("L", fromBelow, ofSize(13), Origin::lowerLeft, scale);
        const auto upper = painted("L", fromAbove, ofSize(13), Origin::upperLeft, scale);
        EXPECT_EQ(pixelsOf(lower), pixelsOf(upper)) << scale;
        const auto ink = inkOf(upper);
        ASSERT_TRUE(ink);
        // The foot of an L is at its bottom, and wider than its head.
        const auto covered = [&](int y) {
            return std::ranges::count_if(upper.row(y), std::identity{});
        };
        EXPECT_GT(covered(ink->bottom), 2 * covered(ink->top + 1)) << scale;
        EXPECT_GE(ink->top, 4 * scale);
        EXPECT_LT(ink->bottom, (4 + size.height) * scale);
    }
}

TEST(TextTest, FootOfTheLettersIsSharp) {
    for (const double y : {3.0, 3.3, 3.5, 3.8})
        for (const double scale : {1.0, 2.0}) {
            const auto surface =
                painted("LEL", {10, y, 60, 20}, ofSize(13), Origin::upperLeft, scale);
            const auto ink = inkOf(surface);
            ASSERT_TRUE(ink);
            const auto darkest = std::ranges::max(surface.row(ink->bottom));
            EXPECT_GT(darkest >> 24, 200u) << y << " at " << scale;
        }
}

TEST(TextTest, AlignmentPlacesTheTextInItsRect) {
    const double width = sizeOfText("100%", ofSize(12)).width;
    TextAttributes attributes = ofSize(12);
    const auto left = inkOf(painted("100%", {20, 0, 60, 20}, attributes, Origin::upperLeft, 2));
    attributes.alignment = Alignment::right;
    const auto right = inkOf(painted("100%", {20, 0, 60, 20}, attributes, Origin::upperLeft, 2));
    attributes.alignment = Alignment::centre;
    const auto centre = inkOf(painted("100%", {20, 0, 60, 20}, attributes, Origin::upperLeft, 2));
    ASSERT_TRUE(left && right && centre);
    EXPECT_NEAR(right->left - left->left, (60 - width) * 2, 1);
    EXPECT_NEAR(centre->left - left->left, (60 - width), 1);
}

TEST(TextTest, TextWiderThanItsRectRunsOnUnlessItIsTruncated) {
    TextAttributes attributes = ofSize(12);
    const auto whole = inkOf(painted("firefox-esr", {0, 0, 30, 20}, attributes, Origin::upperLeft));
    attributes.overflow = Overflow::truncateTail;
    const auto cut = inkOf(painted("firefox-esr", {0, 0, 30, 20}, attributes, Origin::upperLeft));
    ASSERT_TRUE(whole && cut);
    EXPECT_GT(whole->right, 50);
    EXPECT_LE(cut->right, 30);
    EXPECT_GT(cut->right, 20);
}

TEST(TextTest, ShadowIsTheTextAgainOnePointBelow) {
    TextAttributes plain = ofSize(13), shadowed = ofSize(13);
    plain.colour = kRed;
    shadowed.colour = Colour{0, 0, 0, 0};  // only the shadow shows
    shadowed.shadow = Shadow{{0, -1}, kRed};
    for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft})
        for (const int scale : {1, 2}) {
            const auto text = painted("42%", {10, 5, 40, 16}, plain, origin, scale);
            const auto shadow = painted("42%", {10, 5, 40, 16}, shadowed, origin, scale);
            for (int y = 0; y < 29 * scale; ++y)
                ASSERT_TRUE(std::ranges::equal(text.row(y), shadow.row(y + scale))) << y;
        }
}

TEST(TextTest, ColourIsTheTextsOwn) {
    TextAttributes attributes = ofSize(40);
    attributes.colour = kGreen;
    const auto surface = painted("I", {10, 0, 40, 30}, attributes, Origin::upperLeft);
    EXPECT_TRUE(
        std::ranges::any_of(pixelsOf(surface), [](auto pixel) { return pixel == kGreenPixel; }));
    for (const std::uint32_t pixel : pixelsOf(surface))
        EXPECT_EQ(pixel & 0x00FF00FF, 0u);
}

TEST(TextTest, HugeAndBrokenTextsAreBoundedAndPaint) {
    testing::internal::CaptureStderr();
    const std::string letters(10'000, 'x'), broken(10'000, '\xFF');
    EXPECT_LT(sizeOfText(letters, ofSize(13)).width, 1'024 * 13);
    EXPECT_GT(sizeOfText(broken, ofSize(13)).width, 0);
    EXPECT_TRUE(inkOf(painted(letters, {0, 0, 50, 20}, ofSize(13), Origin::upperLeft)));
    EXPECT_TRUE(inkOf(painted(broken, {0, 0, 50, 20}, ofSize(13), Origin::upperLeft)));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TextTest, OddFontSizesStillGiveText) {
    for (const double size : {-3.0, 0.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        const Size found = sizeOfText("8", ofSize(size));
        EXPECT_GT(found.width, 0) << size;
        EXPECT_LT(found.width, 1'000) << size;
    }
}

TEST(TextTest, FamilyThatTheMachineLacksHasAStandIn) {
    TextAttributes attributes = ofSize(12);
    for (const char* const family : {"Helvetica", "Helvetica Neue", "No Such Family"}) {
        attributes.font.family = family;
        EXPECT_GT(sizeOfText("System", attributes).width, 20) << family;
    }
}

TEST(TextTest, TextsAskedForAgainAllocateNothing) {
    ImageSurface surface({100, 30}, 1);
    TextAttributes attributes = ofSize(12);
    attributes.font.family = "Helvetica Neue Medium";  // longer than a string holds by itself
    attributes.overflow = Overflow::truncateTail;
    const auto ask = [&] {
        auto context = surface.context(Origin::upperLeft);
        for (const char* const text : {"a rather long text, for a row", "12%", "日本", "\xFF"}) {
            sizeOfText(text, attributes);
            context.drawText(text, Rect{0, 0, 80, 20}, attributes);
            context.drawText(text, Point{0, 0}, attributes);
        }
    };
    ask();
    const AllocationCounter allocations;
    ask();
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor::Painting
