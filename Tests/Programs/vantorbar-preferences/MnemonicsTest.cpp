#include "Programs/vantorbar-preferences/Model/Mnemonics.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(MnemonicsTest, FirstLettersOfWordsComeFirst) {
    Mnemonics mnemonics;
    EXPECT_EQ(mnemonics.mark("Menu Bar"), "_Menu Bar");
    EXPECT_EQ(mnemonics.mark("More Columns"), "More _Columns");
    EXPECT_EQ(mnemonics.mark("MCo"), "MC_o");
}

TEST(MnemonicsTest, LettersBeyondASCIIAreLeftAlone) {
    Mnemonics mnemonics;
    EXPECT_EQ(mnemonics.mark("Größe"), "_Größe");
    EXPECT_EQ(mnemonics.mark("Écran"), "É_cran");
}

TEST(MnemonicsTest, OtherScriptsHaveALetterBehindTheLabel) {
    Mnemonics mnemonics;
    EXPECT_EQ(mnemonics.mark("言語"), "言語(_A)");
    EXPECT_EQ(mnemonics.mark("履歴"), "履歴(_B)");
}

TEST(MnemonicsTest, WithoutAFreeLetterThereIsNone) {
    Mnemonics mnemonics;
    EXPECT_EQ(mnemonics.mark("ab"), "_ab");
    EXPECT_EQ(mnemonics.mark("ab"), "a_b");
    EXPECT_EQ(mnemonics.mark("ab"), "ab");
    EXPECT_EQ(mnemonics.mark(""), "(_C)");
}

TEST(MnemonicsTest, LowLinesOfTheLabelAreNoMarks) {
    Mnemonics mnemonics;
    EXPECT_EQ(mnemonics.mark("_snake_case"), "___snake__case");
}

}  // namespace
}  // namespace vantor
