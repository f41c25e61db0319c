#include "Platform/Linux/ProcessNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>

#include "Foundation/UTF8.h"
#include "Platform/Linux/ProcessTexts.h"

namespace vantor {
namespace {

constexpr std::size_t kCutNameBytes = 15;
constexpr std::size_t kMostBytes = 128;
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// A program that runs scripts. Its options, as it spells them: those with a value behind them,
/// those after which no script comes, and those whose value is the script or module.
struct Interpreter {
    std::string_view name;  // a version may follow
    std::string_view valued, scriptless, naming;
};

constexpr std::string_view kShellValued = " -o -O --rcfile --init-file ";
constexpr std::string_view kShellScriptless = " -c -s ";

constexpr Interpreter kInterpreters[]{
    {"python", " -W -X --check-hash-based-pycs ", " -c ", " -m "},
    {"pypy", " -W -X ", " -c ", " -m "},
    {"perl", " -F -I -M -m ", " -E -e ", ""},
    {"ruby", " -C -E -I -r ", " -e ", ""},
    {"node", " -C -r --conditions --env-file --import --loader --require ",
     " -e -p --eval --print ", ""},
    {"nodejs", " -C -r --conditions --import --loader --require ", " -e -p --eval --print ", ""},
    {"sh", kShellValued, kShellScriptless, ""},
    {"bash", kShellValued, kShellScriptless, ""},
    {"dash", kShellValued, kShellScriptless, ""},
    {"ash", kShellValued, kShellScriptless, ""},
    {"ksh", kShellValued, kShellScriptless, ""},
    {"mksh", kShellValued, kShellScriptless, ""},
    {"zsh", kShellValued, kShellScriptless, ""},
    {"csh", "", kShellScriptless, ""},
    {"tcsh", "", kShellScriptless, ""},
    {"fish", " -C -d -o ", " -c ", ""},
    {"php", " -c -d -z ", " -B -R -S -a -r ", " -F -f "},
    {"lua", " -e -l ", "", ""},
    {"luajit", " -e -j -l ", "", ""},
    {"tclsh", " -encoding ", "", ""},
    {"wish", " -encoding ", "", ""},
    {"gjs", " -I --include-path ", " -c --command ", ""},
    {"guile", " -C -L -l -x ", " -c ", " -s "},
    {"Rscript", "", " -e ", ""},
};

constexpr std::array<std::string_view, 10> kShells{"ash", "bash", "csh", "dash", "fish",
                                                   "ksh", "mksh", "sh",  "tcsh", "zsh"};

bool isVersion(std::string_view text) noexcept {
    return text.find_first_not_of("0123456789.") == text.npos;
}

const Interpreter* interpreterNamed(std::string_view name) noexcept {
    const auto found = std::ranges::find_if(kInterpreters, [name](const Interpreter& candidate) {
        return name.starts_with(candidate.name) && isVersion(name.substr(candidate.name.size()));
    });
    return found == std::end(kInterpreters) ? nullptr : &*found;
}

/// Whether `option` is one of a list with blanks around each.
bool holds(std::string_view list, std::string_view option) noexcept {
    const std::size_t at = list.find(option);
    return at != list.npos && at > 0 && list[at - 1] == ' ' &&
           list.substr(at + option.size()).starts_with(' ');
}

/// What an argument before the script says about the ones behind it.
struct OptionMeaning {
    enum class Next { option, value, script, none } next = Next::option;
    std::string_view name = {};  // the script or module, where it's in the same argument
};

OptionMeaning meaningOfWord(const Interpreter& interpreter, std::string_view option) noexcept {
    using Next = OptionMeaning::Next;
    if (option == "--")
        return {Next::script};
    if (option == "-" || holds(interpreter.scriptless, option))
        return {Next::none};
    if (holds(interpreter.naming, option))
        return {Next::script};
    return {holds(interpreter.valued, option) ? Next::value : Next::option};
}

/// "-uBm", letters with one dash: a letter that takes a value takes the rest, or what comes next.
OptionMeaning meaningOfLetters(const Interpreter& interpreter, std::string_view letters) noexcept {
    for (std::size_t at = 1; at < letters.size(); ++at) {
        const std::array<char, 2> option{'-', letters[at]};
        const auto meaning = meaningOfWord(interpreter, {option.data(), option.size()});
        const std::string_view rest = letters.substr(at + 1);
        if (meaning.next == OptionMeaning::Next::none || rest.empty())
            return meaning;
        if (meaning.next == OptionMeaning::Next::script)
            return {meaning.next, rest};
        if (meaning.next == OptionMeaning::Next::value)
            return {};
    }
    return {};
}

OptionMeaning meaningOf(const Interpreter& interpreter, std::string_view argument) noexcept {
    const OptionMeaning whole = meaningOfWord(interpreter, argument);
    const bool isLetters = argument.size() > 2 && argument[0] == '-' && argument[1] != '-';
    return isLetters && whole.next == OptionMeaning::Next::option
               ? meaningOfLetters(interpreter, argument)
               : whole;
}

/// A path without the slashes at its end, which no file's has.
std::string_view scriptName(std::string_view path) noexcept {
    path = path.substr(0, path.find_last_not_of('/') + 1);
    return baseName(path);
}

/// The script that `interpreter` was started with, or "".
std::string_view scriptIn(const Interpreter& interpreter, std::string_view cmdline) noexcept {
    ArgumentReader arguments(cmdline);
    arguments.next();  // its own name
    while (const auto argument = arguments.next()) {
        const bool isOption = argument->starts_with('-') || argument->starts_with('+');
        if (!isOption)
            return scriptName(*argument);
        const OptionMeaning meaning = meaningOf(interpreter, *argument);
        if (meaning.next == OptionMeaning::Next::none)
            return {};
        if (meaning.next == OptionMeaning::Next::script)
            return scriptName(meaning.name.empty() ? arguments.next().value_or("") : meaning.name);
        if (meaning.next == OptionMeaning::Next::value)
            arguments.next();
    }
    return {};
}

/// The file's own name: of one that was replaced on disk the kernel says so behind it.
std::string_view programName(std::string_view exe) noexcept {
    constexpr std::string_view kDeleted = " (deleted)";
    if (exe.ends_with(kDeleted))
        exe.remove_suffix(kDeleted.size());
    return baseName(exe);
}

/// The whole of a name that was cut, where one of the texts has it. The file's name comes first:
/// it is one word, where a program that names itself may have put all its arguments.
std::string_view uncut(const NameSources& sources) noexcept {
    ArgumentReader arguments(sources.cmdline);
    const std::string_view first = arguments.next().value_or("");
    const std::string_view second = arguments.next().value_or("");  // a script's, behind a "#!"
    for (const std::string_view name :
         {programName(sources.exe), baseName(first), scriptName(second)})
        if (name.starts_with(sources.kernelName))
            return name;
    return sources.kernelName;
}

bool isControl(std::string_view letter) noexcept {
    const auto first = static_cast<unsigned char>(letter[0]);
    if (letter.size() == 1)
        return first < 0x20 || first == 0x7F;
    return letter.size() == 2 && first == 0xC2 && static_cast<unsigned char>(letter[1]) < 0xA0;
}

/// Line ends and the marks that turn texts around: U+2028 to U+202E, U+2066 to U+2069.
bool isDisruptive(std::string_view letter) noexcept {
    const bool isGeneral = letter.size() == 3 && letter[0] == '\xE2';
    if (!isGeneral)
        return false;
    const auto last = static_cast<unsigned char>(letter[2]);
    return (letter[1] == '\x80' && last >= 0xA8 && last <= 0xAE) ||
           (letter[1] == '\x81' && last >= 0xA6 && last <= 0xA9);
}

}  // namespace

std::string_view knownName(const NameSources& sources) noexcept {
    const std::string_view name = sources.kernelName;
    if (const Interpreter* const interpreter = interpreterNamed(name)) {
        const std::string_view script = scriptIn(*interpreter, sources.cmdline);
        return script.empty() || script == "." || script == ".." ? name : script;
    }
    return isCut(name) ? uncut(sources) : name;
}

bool isCut(std::string_view kernelName) noexcept {
    return kernelName.empty() || kernelName.size() == kCutNameBytes;
}

bool isShell(std::string_view kernelName) noexcept {
    return std::ranges::find(kShells, kernelName) != kShells.end();
}

std::string readable(std::string_view name) {
    std::string text;
    while (!name.empty()) {
        const std::size_t length = utf8LetterLength(name);
        const std::string_view letter = name.substr(0, std::max(length, std::size_t{1}));
        const bool isGood = length > 0 && !isControl(letter) && !isDisruptive(letter);
        const std::string_view shown = isGood ? letter : kReplacement;
        if (text.size() + shown.size() > kMostBytes)
            break;
        text += shown;
        name.remove_prefix(letter.size());
    }
    return text;
}

}  // namespace vantor
