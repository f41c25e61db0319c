#include "Tests/Support/DecimalCommas.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <fmt/format.h>

#include "Tests/Support/Environment.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

constexpr const char* kName = "commas";

void write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file) << text;
}

std::string characters() {
    std::string map = "<code_set_name> ASCII\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
    for (int code = 0; code < 128; ++code)
        map += fmt::format("<U{0:04X}> /x{0:02x}\n", code);
    return map + "END CHARMAP\n";
}

/// Without the sources of other locales, which a machine may lack. The compiler complains of all
/// that such a locale leaves out, and writes it.
void makeLocale(const TemporaryFolder& folder) {
    write(folder / "source", "comment_char %\nescape_char /\nLC_NUMERIC\ndecimal_point \",\"\n"
                             "thousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n");
    write(folder / "characters", characters());
    const std::string path = folder.path().string();
    const std::string command =
        fmt::format("localedef -c --no-archive -i '{0}/source' -f '{0}/characters' '{0}/{1}' "
                    ">'{0}/complaints' 2>&1",
                    path, kName);
    if (std::system(command.c_str()) == -1 ||
        !std::filesystem::exists(folder / kName / "LC_NUMERIC"))
        throw std::runtime_error("localedef made no locale");
}

locale_t madeLocale() {
    const TemporaryFolder folder;
    makeLocale(folder);
    const Variable path("LOCPATH", folder.path().string());
    const LeakOfSearchPath leak;
    return newlocale(LC_ALL_MASK, kName, nullptr);
}

}  // namespace

DecimalCommas::DecimalCommas() : commas_(madeLocale()) {
    if (commas_ == nullptr)
        throw std::runtime_error("the locale that was made can't be used");
    previous_ = uselocale(commas_);
    if (std::string(localeconv()->decimal_point) != ",")
        throw std::runtime_error("the locale that was made has no decimal comma");
}

DecimalCommas::~DecimalCommas() {
    uselocale(previous_);
    freelocale(commas_);
}

bool DecimalCommas::areInUse() const noexcept { return uselocale(nullptr) == commas_; }

}  // namespace vantor::test
