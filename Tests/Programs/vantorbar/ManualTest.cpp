// What users read beside the program says what the program says: the manual, the completions of
// shells, and the table of settings.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/Child.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::IsSubsetOf;
using Texts = std::set<std::string>;

/// What can stand behind a command. Options are the long ones, without --help, which all have.
struct Command {
    Texts subcommands, options;
    bool operator==(const Command&) const = default;
};
/// By the subcommands that lead to it, separated by blanks: "history export".
using Commands = std::map<std::string, Command>;

void PrintTo(const Command& command, std::ostream* out) {
    *out << testing::PrintToString(command.subcommands) << ' '
         << testing::PrintToString(command.options);
}

std::string contentsOf(const std::string& file) {
    std::ifstream stream(fs::path(VANTOR_SOURCE_DIR) / file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string outputOf(const fs::path& program, test::Words words) {
    const test::TemporaryFolder home;
    words.insert(words.begin(), program.string());
    test::Child child(words, {fmt::format("HOME={}", home.path().string()), "PATH=/usr/bin:/bin"});
    const std::string output = child.rest();
    EXPECT_EQ(child.status(), 0) << output;
    return output;
}

template <class Take>
void forEachMatch(const std::string& text, const char* pattern, const Take& take) {
    const std::regex expression(pattern, std::regex::ECMAScript | std::regex::multiline);
    for (std::sregex_iterator found(text.begin(), text.end(), expression), end; found != end;
         ++found)
        take(*found);
}

std::string joined(const std::string& path, const std::string& word) {
    return path.empty() ? word : path + ' ' + word;
}

test::Words wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// What the program's help tells of the command at `path`, and of those below it.
void addToldCommands(const std::string& path, Commands& commands) {
    test::Words words = wordsOf(path);
    words.emplace_back("--help");
    const std::string help = outputOf(VANTOR_PROGRAM, words);
    Command& command = commands[path];
    forEachMatch(help, "^  (?:-h,)?--([a-z-]+)", [&](const std::smatch& found) {
        if (found[1] != "help")
            command.options.insert(found[1]);
    });
    const auto list = help.find("\nSubcommands:");
    if (list == help.npos)
        return;
    forEachMatch(help.substr(list), "^  ([a-z]+) ",
                 [&](const std::smatch& found) { command.subcommands.insert(found[1]); });
    for (const std::string& subcommand : command.subcommands)
        addToldCommands(joined(path, subcommand), commands);
}

const Commands& toldCommands() {
    static const Commands commands = [] {
        Commands made;
        addToldCommands("", made);
        return made;
    }();
    return commands;
}

/// The options that one section of a manual page describes.
Texts describedOptions(const std::string& section) {
    Texts options;
    forEachMatch(section, R"(^\.TP\n\.BI? (.*)$)", [&](const std::smatch& found) {
        const std::string line = std::regex_replace(found[1].str(), std::regex(R"(\\-)"), "-");
        forEachMatch(line, "--([a-z-]+)", [&](const std::smatch& option) {
            if (option[1] != "help")
                options.insert(option[1]);
        });
    });
    return options;
}

TEST(ManualTest, HelpTellsOfSubcommandsWithinSubcommands) {
    EXPECT_THAT(toldCommands().at("history").subcommands, Contains("export"));
    EXPECT_THAT(toldCommands().at("history export").options,
                AllOf(Contains("since"), Contains("scale")));
}

TEST(ManualTest, PageDescribesEachSubcommandAndItsOptions) {
    const std::string page = contentsOf("Documentation/Manual/vantorbar.1");
    std::map<std::string, Texts> described, told;
    const auto list = page.find(".SH SUBCOMMANDS"), behind = page.find(".SH EXIT STATUS");
    ASSERT_NE(list, page.npos);
    ASSERT_NE(behind, page.npos);
    described[""] = describedOptions(page.substr(0, list));
    forEachMatch(
        page.substr(list, behind - list), R"(^\.SS vantorbar (.*)\n((?:(?!\.SS).*\n)*))",
        [&](const std::smatch& found) { described[found[1]] = describedOptions(found[2]); });
    for (const auto& [path, command] : toldCommands())
        told[path] = command.options;
    EXPECT_EQ(described, told);
}

TEST(ManualTest, PageOfTheDaemonDescribesItsOptions) {
    const fs::path daemon = fs::path(VANTOR_PROGRAM).parent_path() / "vantorbar-daemon";
    Texts told;
    forEachMatch(outputOf(daemon, {"--help"}), "--([a-z-]+)", [&](const std::smatch& found) {
        if (found[1] != "help")
            told.insert(found[1]);
    });
    EXPECT_THAT(told, Contains("version"));
    EXPECT_EQ(describedOptions(contentsOf("Documentation/Manual/vantorbar-daemon.8")), told);
}

TEST(ManualTest, PageOfThePreferencesDescribesItsOptions) {
    const fs::path program = fs::path(VANTOR_PROGRAM).parent_path() / "vantorbar-preferences";
    if (!fs::exists(program))
        GTEST_SKIP() << "it isn't built";
    Texts told;
    forEachMatch(outputOf(program, {"--help"}), "--([a-z-]+)", [&](const std::smatch& found) {
        if (!found[1].str().starts_with("help"))  // the toolkit has several
            told.insert(found[1]);
    });
    EXPECT_EQ(describedOptions(contentsOf("Documentation/Manual/vantorbar-preferences.1")), told);
}

TEST(ManualTest, FishCompletesWhatHelpTells) {
    Commands completed;
    for (const auto& [path, told] : toldCommands())
        completed[path];  // one without options and subcommands needs no line
    const std::string script = contentsOf("Resources/Completions/vantorbar.fish");
    forEachMatch(script, "-n '__vantorbar_(?:at|end) ([a-z ]*)' -l ([a-z-]+) ",
                 [&](const std::smatch& found) { completed[found[1]].options.insert(found[2]); });
    forEachMatch(
        script, "-n '__vantorbar_end ([a-z ]*)' -a ([a-z]+) ",
        [&](const std::smatch& found) { completed[found[1]].subcommands.insert(found[2]); });
    EXPECT_EQ(completed, toldCommands());
}

/// Scripts with a case for each command: the options in it, and all words.
struct Case {
    Texts options, words;
};

std::map<std::string, Case> casesOf(const std::string& script) {
    std::map<std::string, Case> cases;
    forEachMatch(
        script, R"re(^ +"([a-z ]*)"\)((?:[^;]|;(?!;))*);;)re", [&](const std::smatch& found) {
            Case& made = cases[found[1]];
            forEachMatch(found[2], "--([a-z-]+)",
                         [&](const std::smatch& option) { made.options.insert(option[1]); });
            forEachMatch(found[2], "[a-z]+",
                         [&](const std::smatch& word) { made.words.insert(word[0]); });
        });
    return cases;
}

TEST(ManualTest, BashCompletesWhatHelpTells) {
    const auto cases = casesOf(contentsOf("Resources/Completions/vantorbar"));
    EXPECT_EQ(cases.size(), toldCommands().size());
    for (const auto& [path, told] : toldCommands()) {
        SCOPED_TRACE(path);
        ASSERT_TRUE(cases.contains(path));
        EXPECT_EQ(cases.at(path).options, told.options);
        EXPECT_THAT(told.subcommands, IsSubsetOf(cases.at(path).words));
    }
}

TEST(ManualTest, ZshCompletesWhatHelpTells) {
    // Options that several commands have are named once, above.
    const std::map<std::string, std::string> named{
        {"folder", "$folder"}, {"scale", "$scale"}, {"combined", "$combined"}};
    std::string script = contentsOf("Resources/Completions/_vantorbar");
    for (const auto& [option, name] : named)
        for (auto at = script.find(name); at != script.npos; at = script.find(name, at))
            script.replace(at, name.size(), "--" + option);
    const auto cases = casesOf(script);
    EXPECT_EQ(cases.size(), toldCommands().size());
    for (const auto& [path, told] : toldCommands()) {
        SCOPED_TRACE(path);
        ASSERT_TRUE(cases.contains(path));
        EXPECT_EQ(cases.at(path).options, told.options);
        EXPECT_THAT(told.subcommands, IsSubsetOf(cases.at(path).words));
    }
}

TEST(ManualTest, TableOfSettingsHasEachWithItsDefault) {
    std::map<std::string, std::string> described, told;
    forEachMatch(contentsOf("README.md"), R"(^\| `([A-Za-z_-]+)` \| `([^`]*)` \|)",
                 [&](const std::smatch& found) { described[found[1]] = found[2]; });
    forEachMatch(outputOf(VANTOR_PROGRAM, {"prefs", "list"}), R"(^(\S+) +(.*\S) +default$)",
                 [&](const std::smatch& found) { told[found[1]] = found[2]; });
    EXPECT_EQ(described, told);
}

}  // namespace
}  // namespace vantor
