#include "Hosts/Text/TerminalShape.h"

namespace vantor {
namespace {

bool contains(std::string_view text, std::string_view part) noexcept {
    return text.find(part) != text.npos;
}

ColourDepth colourDepth(const TerminalEnvironment& environment) noexcept {
    if (!environment.noColor.empty() || environment.term.starts_with("vt"))
        return ColourDepth::none;
    if (environment.colorTerm == "truecolor" || environment.colorTerm == "24bit" ||
        contains(environment.term, "-direct"))
        return ColourDepth::direct;
    return contains(environment.term, "256color") ? ColourDepth::palette : ColourDepth::basic;
}

}  // namespace

TerminalAbilities terminalAbilities(const TerminalEnvironment& environment) noexcept {
    if (environment.term.empty() || environment.term == "dumb")
        return {};
    // The kernel's own console has a font of 256 or 512 glyphs, mostly without eighth blocks.
    const bool unicode = environment.codeset == "UTF-8" && environment.term != "linux";
    return {unicode ? Glyphs::unicode : Glyphs::ascii, colourDepth(environment), Cursor::placed};
}

}  // namespace vantor
