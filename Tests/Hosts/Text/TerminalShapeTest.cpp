#include "Hosts/Text/TerminalShape.h"

#include <vector>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(TerminalShapeTest, AbilitiesFollowFromTheEnvironment) {
    struct Case {
        TerminalEnvironment environment;
        TerminalAbilities abilities;
    };
    const auto placed = Cursor::placed;
    const std::vector<Case> cases{
        {{"xterm-256color", "", "", "UTF-8"}, {Glyphs::unicode, ColourDepth::palette, placed}},
        {{"xterm-256color", "truecolor", "", "UTF-8"},
         {Glyphs::unicode, ColourDepth::direct, placed}},
        {{"xterm", "24bit", "", "UTF-8"}, {Glyphs::unicode, ColourDepth::direct, placed}},
        {{"xterm-direct", "", "", "UTF-8"}, {Glyphs::unicode, ColourDepth::direct, placed}},
        {{"screen", "", "", "ANSI_X3.4-1968"}, {Glyphs::ascii, ColourDepth::basic, placed}},
        {{"xterm", "truecolor", "1", "UTF-8"}, {Glyphs::unicode, ColourDepth::none, placed}},
        {{"vt220", "", "", "UTF-8"}, {Glyphs::unicode, ColourDepth::none, placed}},
        {{"linux", "", "", "UTF-8"}, {Glyphs::ascii, ColourDepth::basic, placed}},
        {{"dumb", "truecolor", "", "UTF-8"}, {}},
        {{"", "", "", "UTF-8"}, {}},
    };
    for (const auto& [environment, abilities] : cases)
        EXPECT_EQ(terminalAbilities(environment), abilities)
            << environment.term << " " << environment.colorTerm;
}

}  // namespace
}  // namespace vantor
