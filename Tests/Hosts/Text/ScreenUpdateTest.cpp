#include "Hosts/Text/ScreenUpdate.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TextFrame frameOf(double user, std::size_t rows = 3) {
    TextFigures figures;
    figures.mean = ProcessorShares{user, 0, 0};
    return render(figures, {80, rows, {Glyphs::ascii, ColourDepth::none, Cursor::placed}});
}

TEST(ScreenUpdateTest, TheFirstFrameIsWrittenWholeInOnePiece) {
    ScreenUpdate update;
    const std::string bytes{update.to(frameOf(50))};
    EXPECT_THAT(bytes, StartsWith("\x1b[?2026h\x1b[1;1H CPU   50.0 %"));
    EXPECT_THAT(bytes, HasSubstr("\x1b[K\x1b[2;1H ###"));
    EXPECT_THAT(bytes, EndsWith("\x1b[J\x1b[?2026l"));
}

TEST(ScreenUpdateTest, TheSameFrameAgainWritesNothing) {
    ScreenUpdate update;
    update.to(frameOf(50));
    EXPECT_EQ(update.to(frameOf(50)), "");
}

TEST(ScreenUpdateTest, OnlyLinesThatChangedAreWritten) {
    ScreenUpdate update;
    update.to(frameOf(50));
    const std::string bytes{update.to(frameOf(50.1))};  // too little for the bar
    EXPECT_THAT(bytes, HasSubstr("\x1b[1;1H CPU   50.1 %"));
    EXPECT_THAT(bytes, Not(HasSubstr("\x1b[2;1H")));
    EXPECT_THAT(bytes, HasSubstr("\x1b[3;1H"));
    EXPECT_THAT(bytes, Not(HasSubstr("\x1b[J")));
}

TEST(ScreenUpdateTest, AFrameThatShrinksErasesWhatIsBelowIt) {
    ScreenUpdate update;
    update.to(frameOf(50, 3));
    const std::string bytes{update.to(frameOf(50, 2))};
    EXPECT_THAT(bytes, StartsWith("\x1b[?2026h\x1b[2;1H"));
    EXPECT_THAT(bytes, EndsWith("\x1b[J\x1b[?2026l"));
    EXPECT_EQ(update.to(frameOf(50, 2)), "");
}

TEST(ScreenUpdateTest, AFrameThatGrowsAgainWritesTheNewLines) {
    ScreenUpdate update;
    update.to(frameOf(50, 3));
    update.to(frameOf(50, 2));
    EXPECT_THAT(std::string(update.to(frameOf(50, 3))), HasSubstr("\x1b[3;1H"));
}

TEST(ScreenUpdateTest, AForgottenScreenIsWrittenWhole) {
    ScreenUpdate update;
    const std::string first{update.to(frameOf(50))};
    update.forget();
    EXPECT_EQ(update.to(frameOf(50)), first);
}

}  // namespace
}  // namespace vantor
