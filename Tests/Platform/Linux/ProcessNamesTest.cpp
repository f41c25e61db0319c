#include "Platform/Linux/ProcessNames.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vantor {
namespace {

using namespace std::string_literals;

/// As the kernel puts arguments together.
std::string cmdline(const std::vector<std::string>& arguments) {
    std::string text;
    for (const std::string& argument : arguments)
        text += argument + '\0';
    return text;
}

std::string nameOf(const std::string& kernelName, const std::vector<std::string>& arguments,
                   const std::string& exe = {}) {
    const std::string text = cmdline(arguments);
    return std::string(knownName({.kernelName = kernelName, .cmdline = text, .exe = exe}));
}

TEST(ProcessNamesTest, KernelsNameIsTheNameWhereItIsWhole) {
    EXPECT_EQ(nameOf("firefox", {"/usr/lib/firefox/firefox", "-contentproc"}), "firefox");
    EXPECT_EQ(nameOf("nginx", {"nginx: worker process"}), "nginx");
    EXPECT_EQ(nameOf("kthreadd", {}), "kthreadd");
}

TEST(ProcessNamesTest, CutNameIsMadeWhole) {
    EXPECT_EQ(nameOf("gnome-terminal-", {"/usr/libexec/gnome-terminal-server"}),
              "gnome-terminal-server");
    EXPECT_EQ(nameOf("a-name-that-is-", {"other"}, "/opt/a-name-that-is-longer (deleted)"),
              "a-name-that-is-longer");
    EXPECT_EQ(nameOf("chromium-browse", {"/usr/lib/chromium-browser --type=gpu"},
                     "/usr/lib/chromium-browser"),
              "chromium-browser");
    EXPECT_EQ(nameOf("unattended-upgr", {"/usr/bin/python3", "/usr/bin/attended-upgrade"}),
              "unattended-upgr")
        << "what doesn't begin with the kernel's name is another name";
    EXPECT_EQ(nameOf("unattended-upgr", {"/usr/bin/python3", "/usr/bin/unattended-upgrade"}),
              "unattended-upgrade");
    EXPECT_EQ(nameOf("exactly15letter", {"exactly15letter"}), "exactly15letter");
}

TEST(ProcessNamesTest, NamelessProcessIsCalledAfterItsFile) {
    EXPECT_EQ(nameOf("", {"sleep"}, "/usr/bin/sleep"), "sleep");
    EXPECT_EQ(nameOf("", {}), "");
}

TEST(ProcessNamesTest, ScriptStandsForItsInterpreter) {
    struct Case {
        std::string name;
        std::vector<std::string> arguments;
        std::string shown;
    };
    const std::vector<Case> cases{
        {"python3", {"python3", "foo.py"}, "foo.py"},
        {"python3.11", {"/usr/bin/python3.11", "-u", "/home/me/foo.py", "x"}, "foo.py"},
        {"python", {"python", "-W", "ignore", "-X", "dev", "a/b.py"}, "b.py"},
        {"python3", {"python3", "-Wignore::c", "b.py"}, "b.py"},
        {"python3", {"python3", "-uB", "b.py"}, "b.py"},
        {"python3", {"python3", "-m", "http.server", "8000"}, "http.server"},
        {"python3", {"python3", "-um", "http.server"}, "http.server"},
        {"python3", {"python3", "-mhttp.server"}, "http.server"},
        {"python3", {"python3", "-c", "import os"}, "python3"},
        {"python3", {"python3", "-uc", "import os"}, "python3"},
        {"python3", {"python3", "-"}, "python3"},
        {"python3", {"python3"}, "python3"},
        {"python3", {"python3", "--", "-odd.py"}, "-odd.py"},
        {"python3", {"python3", "/srv/tool/"}, "tool"},
        {"python3", {"python3", "."}, "python3"},
        {"python3-config", {"python3-config", "x"}, "python3-config"},
        {"bash", {"-bash"}, "bash"},
        {"bash", {"bash", "--rcfile", "x", "+x", "-eu", "/usr/bin/run.sh"}, "run.sh"},
        {"bash", {"bash", "-c", "sleep 1"}, "bash"},
        {"sh", {"/bin/sh", "-ec", "sleep 1"}, "sh"},
        {"sh", {"sh", "-o", "errexit", "make.sh"}, "make.sh"},
        {"perl", {"perl", "-w", "-I", "lib", "a.pl"}, "a.pl"},
        {"perl", {"perl", "-Mstrict", "-ne", "print"}, "perl"},
        {"ruby", {"ruby", "-rjson", "a.rb"}, "a.rb"},
        {"node", {"node", "--require", "x", "--inspect", "/srv/app.js"}, "app.js"},
        {"node", {"node", "-e", "1"}, "node"},
        {"php8.2", {"php8.2", "-d", "a=b", "-f", "a.php"}, "a.php"},
        {"lua5.4", {"lua5.4", "-l", "x", "a.lua"}, "a.lua"},
    };
    for (const auto& [name, arguments, shown] : cases)
        EXPECT_EQ(nameOf(name, arguments), shown) << cmdline(arguments);
}

TEST(ProcessNamesTest, ShellsAreThoseThatPeopleTypeInto) {
    for (const char* const name : {"bash", "sh", "zsh", "fish"})
        EXPECT_TRUE(isShell(name)) << name;
    for (const char* const name : {"bashful", "", "make", "python3"})
        EXPECT_FALSE(isShell(name)) << name;
}

TEST(ProcessNamesTest, NamesAreShownInReadableLetters) {
    struct Case {
        std::string name, shown;
    };
    const std::vector<Case> cases{
        {"a) b (c", "a) b (c"},
        {"Zähler", "Zähler"},
        {"caf\xE9", "caf\uFFFD"},
        {"\xC3", "\uFFFD"},
        {"a\nb\x1B[1mc", "a\uFFFDb\uFFFD[1mc"},
        {"a\xC2\x85z", "a\uFFFDz"},
        {"a\u202Eb\u2066c\u2028", "a\uFFFDb\uFFFDc\uFFFD"},
        {"a\0b"s, "a\uFFFDb"},
        {"", ""},
    };
    for (const auto& [name, shown] : cases)
        EXPECT_EQ(readable(name), shown);
}

TEST(ProcessNamesTest, LongNameEndsBehindAWholeLetter) {
    std::string name = "x";
    for (int count = 0; count < 100; ++count)
        name += "ä";
    EXPECT_EQ(readable(name).size(), 127u);
}

}  // namespace
}  // namespace vantor
