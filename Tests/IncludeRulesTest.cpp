#include <algorithm>
#include <filesystem>
#include <fstream>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Names = std::vector<std::string_view>;

/// Who may include what. A pattern ending in a slash or a star takes what begins with it.
struct Rule {
    std::string_view why;
    Names patterns;
    Names folders;  // those below them are meant, too
};

const std::vector<Rule> kRules{
    {"a floor includes itself and the floors below it", {"Programs/"}, {"Programs"}},
    {"a floor includes itself and the floors below it", {"Hosts/"}, {"Hosts", "Programs"}},
    {"a floor includes itself and the floors below it",
     {"Targets/"},
     {"Targets", "Hosts", "Programs"}},
    {"a floor includes itself and the floors below it",
     {"Shared/"},
     {"Shared", "Targets", "Hosts", "Programs"}},
    {"a floor includes itself and the floors below it",
     {"Painting/"},
     {"Painting", "Shared", "Targets", "Hosts", "Programs"}},
    {"a floor includes itself and the floors below it",
     {"Platform/"},
     {"Platform", "Painting", "Shared", "Targets", "Hosts", "Programs"}},
    {"only those who choose a platform know one",
     {"Platform/Linux/"},
     {"Platform/Linux", "Hosts", "Programs"}},
    {"only those who choose a platform know one",
     {"Platform/Simulated/"},
     {"Platform/Simulated", "Hosts", "Programs"}},
    {"nothing but tests stands on tests", {"Tests/", "Benchmarks/", "gtest/", "gmock/"}, {}},
    {"only Painting's engine draws", {"cairo*", "pango/", "pango*"}, {"Painting/Cairo"}},
    {"only the SQLite layer talks to SQLite", {"sqlite3*"}, {"Shared/External/SQLite"}},
    {"only the platform, hosts and programs talk to the operating system",
     {"arpa/",    "dirent.h", "fcntl.h", "grp.h",     "ifaddrs.h", "linux/",  "net/",
      "netdb.h",  "netinet/", "poll.h",  "pthread.h", "pwd.h",     "sched.h", "semaphore.h",
      "signal.h", "spawn.h",  "sys/",    "syslog.h",  "termios.h", "unistd.h"},
     {"Platform/Linux", "Hosts", "Programs"}},
    {"only they, and Foundation for our own, open shared objects",
     {"dlfcn.h"},
     {"Foundation", "Platform/Linux", "Hosts", "Programs"}},
    {"who paints knows nothing of the engine's inside", {"Painting/Cairo/"}, {"Painting/Cairo"}},
    {"only the platform, hosts and programs talk to buses and toolkits",
     {"sdbus-c++/", "systemd/", "dbus/", "gtk*", "gdk*", "glib*", "gio/", "X11/", "xcb/",
      "wayland*", "libxfce4panel/", "mate-panel-applet*"},
     {"Platform/Linux", "Hosts", "Programs"}},
};

const Names kExempt{"Tests", "Benchmarks"};
const Names kFolders{"Foundation", "Platform", "Painting", "Shared",    "Targets",
                     "Hosts",      "Programs", "Tests",    "Benchmarks"};

bool matches(std::string_view include, std::string_view pattern) {
    if (pattern.ends_with('*'))
        return include.starts_with(pattern.substr(0, pattern.size() - 1));
    return pattern.ends_with('/') ? include.starts_with(pattern) : include == pattern;
}

bool isBelow(std::string_view file, std::string_view folder) {
    return file.starts_with(folder) && file.substr(folder.size()).starts_with('/');
}

bool isBelowAny(std::string_view file, std::span<const std::string_view> folders) {
    return std::ranges::any_of(folders, [&](auto folder) { return isBelow(file, folder); });
}

/// What `line` includes, or "".
std::string_view includedName(std::string_view line) {
    const auto skip = [&line](std::string_view word) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        const bool found = line.starts_with(word);
        line.remove_prefix(found ? word.size() : line.size());
    };
    skip("#");
    skip("include");
    const auto open = line.find_first_of("<\"");
    if (open == line.npos)
        return {};
    const std::string_view name = line.substr(open + 1);
    return name.substr(0, name.find_first_of(">\""));
}

std::vector<std::string_view> brokenRules(std::string_view file, std::string_view include) {
    std::vector<std::string_view> broken;
    if (include.find("../") != include.npos)
        broken.push_back("paths are from the root");
    if (isBelowAny(file, kExempt))
        return broken;
    for (const Rule& rule : kRules) {
        const bool meant = std::ranges::any_of(
            rule.patterns, [include](auto pattern) { return matches(include, pattern); });
        if (meant && !isBelowAny(file, rule.folders))
            broken.push_back(rule.why);
    }
    return broken;
}

/// One message for each include of `text` that breaks a rule, and one for a header that could be
/// read twice. `file` is its path from the root.
std::vector<std::string> complaints(std::string_view file, std::string_view text) {
    std::vector<std::string> found;
    std::istringstream lines{std::string(text)};
    std::string line;
    bool once = false;
    for (int number = 1; std::getline(lines, line); ++number) {
        once = once || line == "#pragma once";
        const std::string_view include = includedName(line);
        for (const std::string_view why : brokenRules(file, include))
            found.push_back(fmt::format("{}:{}: includes {}: {}", file, number, include, why));
    }
    if (file.ends_with(".h") && !once)
        found.push_back(fmt::format("{}:1: has no #pragma once", file));
    return found;
}

std::string contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<fs::path> sources() {
    std::vector<fs::path> found;
    for (const std::string_view folder : kFolders) {
        const fs::path top = fs::path(VANTOR_SOURCE_DIR) / folder;
        if (!fs::exists(top))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(top))
            if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
                found.push_back(entry.path());
    }
    return found;
}

TEST(IncludeRulesTest, EveryFileKeepsToItsFloor) {
    const std::vector<fs::path> files = sources();
    EXPECT_GT(files.size(), 30u) << "hardly any sources below " << VANTOR_SOURCE_DIR;
    for (const fs::path& path : files) {
        const std::string file = path.lexically_relative(VANTOR_SOURCE_DIR).generic_string();
        for (const std::string& complaint : complaints(file, contents(path)))
            ADD_FAILURE() << complaint;
    }
}

TEST(IncludeRulesTest, IncludesThatLeaveTheirFloorAreFound) {
    struct Case {
        std::string_view file, include;
    };
    const std::vector<Case> cases{
        {"Foundation/A.cpp", "Platform/Clock.h"},
        {"Foundation/A.cpp", "unistd.h"},
        {"Platform/Clock.h", "Platform/Linux/LinuxClock.h"},
        {"Platform/Clock.h", "Shared/KOLVersions.h"},
        {"Platform/Linux/A.cpp", "Platform/Simulated/SimulatedClock.h"},
        {"Platform/Simulated/A.cpp", "Platform/Linux/LinuxClock.h"},
        {"Platform/Simulated/A.cpp", "sys/stat.h"},
        {"Painting/A.cpp", "Shared/KOLVersions.h"},
        {"Painting/A.cpp", "cairo.h"},
        {"Painting/A.cpp", "Painting/Cairo/CairoEngine.h"},
        {"Shared/A.cpp", "dlfcn.h"},
        {"Shared/A.cpp", "Targets/VantorBarCPU/VantorBarCPU.h"},
        {"Shared/A.cpp", "Hosts/Text/TextHost.h"},
        {"Shared/A.cpp", "Platform/Linux/LinuxClock.h"},
        {"Shared/A.cpp", "cairo.h"},
        {"Shared/Database/A.cpp", "sqlite3.h"},
        {"Targets/VantorBarCPU/A.cpp", "Hosts/ItemHost.h"},
        {"Targets/VantorBarCPU/A.cpp", "gtk/gtk.h"},
        {"Hosts/Text/A.cpp", "Programs/vantorbar/RunCommand.h"},
        {"Hosts/Text/A.cpp", "pango/pangocairo.h"},
        {"Programs/vantorbar/A.cpp", "gtest/gtest.h"},
        {"Tests/ATest.cpp", "../Foundation/Colour.h"},
    };
    for (const auto& [file, include] : cases)
        EXPECT_THAT(complaints(file, fmt::format("#pragma once\n\n# include  <{}>\n", include)),
                    ElementsAre(HasSubstr(fmt::format("{}:3: includes {}: ", file, include))));
}

TEST(IncludeRulesTest, IncludesThatKeepToTheirFloorPass) {
    struct Case {
        std::string_view file, include;
    };
    const std::vector<Case> cases{
        {"Foundation/A.cpp", "Foundation/Colour.h"},
        {"Foundation/A.cpp", "sys"},
        {"Foundation/A.cpp", "csignal"},
        {"Platform/Clock.h", "Foundation/Task.h"},
        {"Platform/Linux/A.cpp", "sdbus-c++/sdbus-c++.h"},
        {"Platform/Simulated/A.cpp", "Platform/Clock.h"},
        {"Foundation/A.cpp", "dlfcn.h"},
        {"Painting/Cairo/A.cpp", "cairo.h"},
        {"Shared/External/SQLite/A.cpp", "sqlite3.h"},
        {"Hosts/Gtk/A.cpp", "gtk/gtk.h"},
        {"Programs/vantorbar/A.cpp", "Platform/Linux/LinuxPlatform.h"},
        {"Tests/ATest.cpp", "Platform/Simulated/SimulatedClock.h"},
        {"Benchmarks/ABenchmark.cpp", "unistd.h"},
    };
    for (const auto& [file, include] : cases)
        EXPECT_THAT(complaints(file, fmt::format("#pragma once\n#include \"{}\"\n", include)),
                    IsEmpty());
}

TEST(IncludeRulesTest, LinesThatIncludeNothingAreLeftAlone) {
    EXPECT_EQ(includedName("// #include <unistd.h>"), "");
    EXPECT_EQ(includedName("int include = a<b>::c;"), "");
    EXPECT_EQ(includedName("#include"), "");
    EXPECT_EQ(includedName(""), "");
}

TEST(IncludeRulesTest, HeadersThatCouldBeReadTwiceAreFound) {
    EXPECT_THAT(complaints("Foundation/A.h", "#include <string>\n"),
                ElementsAre("Foundation/A.h:1: has no #pragma once"));
    EXPECT_THAT(complaints("Foundation/A.cpp", "#include <string>\n"), IsEmpty());
}

}  // namespace
