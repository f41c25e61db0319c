#include "Platform/Linux/DesktopEntry.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <utility>

#include <unistd.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestFileBytes = 1 << 20;

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes what stands before `separator`, and the separator, off `rest`.
std::string_view takePart(std::string_view& rest, char separator) noexcept {
    const auto end = std::min(rest.find(separator), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

/// The escapes that every text value of a desktop file may have.
std::string unescaped(std::string_view value) {
    constexpr std::string_view kCodes = "sntr\\";
    constexpr std::string_view kMeanings = " \n\t\r\\";
    std::string text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        const auto code =
            value[at] == '\\' && at + 1 < value.size() ? kCodes.find(value[at + 1]) : kCodes.npos;
        if (code == kCodes.npos) {
            text += value[at];  // a backslash that means nothing here may mean something to Exec
        } else {
            text += kMeanings[code];
            ++at;
        }
    }
    return text;
}

/// One line of the group; `isApplication` is what its Type says.
void readLine(std::string_view line, DesktopEntry& entry, bool& isApplication) {
    const std::string_view key = trimmed(takePart(line, '='));
    const std::string_view value = trimmed(line);
    if (key == "Type")
        isApplication = value == "Application";
    else if (key == "Exec")
        entry.exec = unescaped(value);
    else if (key == "TryExec")
        entry.tryExec = unescaped(value);
    else if (key == "Icon")
        entry.icon = unescaped(value);
    else if (key == "Hidden")
        entry.isHidden = value == "true";
    else if (key == "Terminal")
        entry.needsTerminal = value == "true";
}

/// Reads one Exec value, word by word.
class ExecReader {
public:
    explicit ExecReader(std::string_view exec) : rest_(exec) {}

    std::optional<std::vector<std::string>> read() {
        while (!rest_.empty())
            readNext(rest_.front());
        endWord();
        if (isBroken_ || words_.empty())
            return std::nullopt;
        return std::move(words_);
    }

private:
    void readNext(char next) {
        rest_.remove_prefix(1);
        if (next == ' ' || next == '\t' || next == '\n')
            endWord();
        else if (next == '"')
            readQuoted();
        else if (next == '%')
            readCode();
        else
            put(next);
    }

    void put(char next) {
        word_ += next;
        hasWord_ = true;
    }

    /// Up to the closing quote, in which nothing but a backslash means anything.
    void readQuoted() {
        hasWord_ = true;  // even ""
        while (!rest_.empty() && rest_.front() != '"') {
            if (rest_.front() == '\\' && rest_.size() > 1)
                rest_.remove_prefix(1);
            put(rest_.front());
            rest_.remove_prefix(1);
        }
        isBroken_ = isBroken_ || rest_.empty();
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
    }

    /// We hand over no files: of the codes only %% stands for something. A word that is nothing
    /// but a code goes altogether.
    void readCode() {
        if (rest_.empty()) {
            isBroken_ = true;
            return;
        }
        if (rest_.front() == '%')
            put('%');
        rest_.remove_prefix(1);
    }

    void endWord() {
        if (hasWord_)
            words_.push_back(std::move(word_));
        word_.clear();
        hasWord_ = false;
    }

    std::string_view rest_;
    std::string word_;
    bool hasWord_ = false, isBroken_ = false;
    std::vector<std::string> words_;
};

std::optional<std::string> contentsOf(const fs::path& file) {
    std::error_code unreadable;
    if (!fs::is_regular_file(file, unreadable) ||
        fs::file_size(file, unreadable) > kLargestFileBytes)
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

bool isProgram(const fs::path& file) {
    std::error_code unreadable;
    return fs::is_regular_file(file, unreadable) && access(file.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text) {
    DesktopEntry entry;
    bool isApplication = false, isInside = false;
    while (!text.empty()) {
        const std::string_view line = trimmed(takePart(text, '\n'));
        if (line.starts_with('['))
            isInside = line == "[Desktop Entry]";
        else if (isInside && !line.starts_with('#'))
            readLine(line, entry, isApplication);
    }
    return isApplication || entry.isHidden ? std::optional(std::move(entry)) : std::nullopt;
}

std::optional<std::vector<std::string>> argumentsOf(std::string_view exec) {
    return ExecReader(exec).read();
}

std::vector<fs::path> applicationFolders(const std::optional<fs::path>& dataHome,
                                         const Environment& environment) {
    std::vector<fs::path> folders;
    if (dataHome)
        folders.push_back(*dataHome / "applications");
    const std::string all =
        nonEmpty(environment, "XDG_DATA_DIRS").value_or("/usr/local/share:/usr/share");
    for (std::string_view rest = all; !rest.empty();)
        if (const std::string_view folder = takePart(rest, ':'); folder.starts_with('/'))
            folders.push_back(fs::path(folder) / "applications");
    return folders;
}

std::optional<DesktopEntry> findDesktopEntry(std::string_view id,
                                             std::span<const fs::path> folders) {
    for (const fs::path& folder : folders)
        if (const auto text = contentsOf(folder / id))
            return parseDesktopEntry(*text);
    return std::nullopt;
}

std::optional<fs::path> findProgram(std::string_view name, std::string_view searchPath) {
    if (name.find('/') != name.npos)
        return isProgram(name) ? std::optional(fs::path(name)) : std::nullopt;
    while (!name.empty() && !searchPath.empty())
        if (const fs::path file = fs::path(takePart(searchPath, ':')) / name;
            file.is_absolute() && isProgram(file))
            return file;
    return std::nullopt;
}

std::optional<std::vector<std::string>> commandOf(const DesktopEntry& entry,
                                                  std::string_view searchPath) {
    auto command = entry.isHidden ? std::nullopt : argumentsOf(entry.exec);
    const auto program = command ? findProgram(command->front(), searchPath) : std::nullopt;
    if (!program || (!entry.tryExec.empty() && !findProgram(entry.tryExec, searchPath)))
        return std::nullopt;
    command->front() = program->string();
    if (!entry.needsTerminal)
        return command;
    const auto terminal = findProgram("x-terminal-emulator", searchPath);
    if (!terminal)
        return std::nullopt;
    command->insert(command->begin(), {terminal->string(), "-e"});
    return command;
}

}  // namespace vantor
