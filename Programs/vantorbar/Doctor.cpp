#include "Programs/vantorbar/Doctor.h"

#include <algorithm>
#include <array>
#include <iterator>

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace vantor {
namespace {

constexpr Verdict kFine = Verdict::fine, kLimited = Verdict::limited, kMissing = Verdict::missing;

/// What one check says; its name stands in the table.
struct Diagnosis {
    Verdict verdict;
    std::string what;
    std::string remedy = {};
};

std::string threadsACore(std::int64_t logical, std::int64_t physical) {
    if (logical == physical)
        return "one thread a core";
    return logical % physical == 0 ? fmt::format("{} threads a core", logical / physical)
                                   : "some with several threads";
}

Diagnosis processors(const MachineFacts& facts) {
    const auto& [cpus, logical, physical, readable, processes, offline] = facts.processors;
    if (cpus == 0)
        return {kMissing, "the system names no processors", "mount /sys and /proc"};
    if (physical == 0)
        return {kLimited, fmt::format("{}, but the system doesn't say how many cores", cpus),
                "mount /sys; until then physical cores aren't shown"};
    return {kFine,
            fmt::format("{} in {} cores, {}", cpus, physical, threadsACore(logical, physical))};
}

Diagnosis machine(const MachineFacts& facts) {
    const auto& [model, processor, memoryBytes] = facts.identity;
    const std::string memory =
        memoryBytes ? fmt::format("{:.1f} GiB", static_cast<double>(*memoryBytes) / 0x1p30)
                    : "unknown memory";
    return {kFine, fmt::format("{}, {}, {}", model.value_or("unnamed model"),
                               processor.value_or("unnamed processor"), memory)};
}

/// "memory and load", what is told of the two.
std::string_view toldOf(const GraphicsFacts& graphics) noexcept {
    if (graphics.tellsMemory)
        return graphics.tellsLoad ? "memory and load" : "memory alone";
    return graphics.tellsLoad ? "load alone" : "neither memory nor load";
}

Diagnosis graphicsProcessor(const GraphicsFacts& graphics) {
    const std::string what = fmt::format("{}, driven by {}", graphics.model, graphics.driver);
    if (graphics.driver.empty())
        return {kLimited, fmt::format("{}, driven by nobody", graphics.model),
                "load its kernel module"};
    if (graphics.power == "asleep")
        return {kFine, what + ", asleep; it is left alone until something wakes it"};
    const bool tells = graphics.tellsMemory || graphics.tellsLoad;
    if (graphics.driver == "nvidia" && !tells && graphics.power == "awake")
        return {kLimited, what + ", whose management library doesn't answer",
                "install libnvidia-ml.so.1 of the driver's version"};
    const std::string size =
        graphics.memoryBytes > 0
            ? fmt::format(", {:.1f} GiB", static_cast<double>(graphics.memoryBytes) / 0x1p30)
            : "";
    return {kFine,
            fmt::format("{}{}, {}, which tells {}", what, size,
                        graphics.power.empty() ? "awake" : graphics.power, toldOf(graphics))};
}

Diagnosis deviceNames(const MachineFacts& facts) {
    if (!facts.hasDeviceNames && !facts.graphics.empty())
        return {kLimited, "no list; graphics processors are called by their numbers",
                "install the package pci.ids, or hwdata"};
    return {kFine, facts.graphics.empty() ? "not needed" : "listed"};
}

Diagnosis offlineProcessors(const MachineFacts& facts) {
    if (facts.processors.offline.empty())
        return {kFine, "none"};
    return {kLimited,
            fmt::format("{} are switched off; they keep their place and show no load",
                        facts.processors.offline),
            "write 1 to /sys/devices/system/cpu/cpuN/online as root to switch one on"};
}

Diagnosis counters(const MachineFacts& facts) {
    if (!facts.processors.countersReadable)
        return {kMissing, "/proc/stat can't be read, so there is nothing to show",
                "mount /proc, or let this user read it"};
    return {kFine, "readable"};
}

Diagnosis processes(const MachineFacts& facts) {
    const auto& [tasks, threads] = facts.processors.processes;
    if (tasks <= 0 || threads <= 0)
        return {kLimited, "the system doesn't count them; they show as 0", "mount /proc"};
    return {kFine, fmt::format("{}, with {} threads", tasks, threads)};
}

Diagnosis loads(const MachineFacts& facts) {
    return {kFine, fmt::format("{:.2f} over the last minute", facts.load)};
}

Diagnosis bootTime(const MachineFacts& facts) {
    if (!facts.bootSeconds)
        return {kLimited, "unknown, so the uptime is wrong", "mount /proc"};
    return {kFine, fmt::format("{:%Y-%m-%d %H:%M:%S} UTC", fmt::gmtime(*facts.bootSeconds))};
}

Diagnosis sessionBus(const MachineFacts& facts) {
    if (!facts.sessionBus.isThere)
        return {kLimited, "none; changed settings reach a running program only when it looks",
                "start the program inside the desktop session, or under dbus-run-session"};
    return {kFine, "answers"};
}

Diagnosis appearance(const MachineFacts& facts) {
    if (!facts.sessionBus.servesUs)
        return {kLimited, "the desktop doesn't tell; light and without contrast is assumed",
                "install xdg-desktop-portal and the portal of your desktop"};
    return {kFine, "the desktop's portal tells of dark and of contrast"};
}

Diagnosis sleepNotices(const MachineFacts& facts) {
    if (!facts.systemBus.isThere)
        return {kLimited, "no system bus; sleep is noticed only after the machine woke",
                "start dbus"};
    if (!facts.systemBus.servesUs)
        return {kLimited, "logind doesn't answer; sleep is noticed only after the machine woke",
                "start systemd-logind or elogind"};
    return {kFine, "logind tells of them"};
}

Diagnosis preferences(const MachineFacts& facts) {
    const auto& [file, state, keys, reason] = facts.preferences;
    if (!file)
        return {kMissing, "there is no place for them", "set HOME or XDG_CONFIG_HOME"};
    switch (state) {
    case PreferenceFacts::State::absent:
        return {kFine, fmt::format("nothing stored yet; {} will hold them", file->string())};
    case PreferenceFacts::State::readable:
        return {kFine, fmt::format("{} stored in {}", keys, file->string())};
    case PreferenceFacts::State::damaged:
        return {kLimited, fmt::format("{} is damaged; the defaults hold", file->string()),
                "bring back a copy; at its next start the program sets the file aside"};
    case PreferenceFacts::State::unreadable:
        break;
    }
    return {kMissing, fmt::format("{} can't be read: {}", file->string(), reason),
            "make it a plain file that this user can read and write"};
}

Diagnosis folder(const FolderFacts& facts, std::string_view variable) {
    if (!facts.path)
        return {kMissing, "there is no such place", fmt::format("set HOME or {}", variable)};
    if (!facts.isWritable)
        return {kMissing, fmt::format("{} can't be written to", facts.path->string()),
                fmt::format("make it writable, or set {} to another place", variable)};
    return {kFine, fmt::format("{}{}", facts.path->string(),
                               facts.exists ? "" : ", made when it is needed")};
}

Diagnosis settingsFolder(const MachineFacts& facts) {
    return folder(facts.preferenceFolder, "XDG_CONFIG_HOME");
}

Diagnosis historyFolder(const MachineFacts& facts) {
    return folder(facts.applicationSupport, "XDG_DATA_HOME");
}

Diagnosis logFolder(const MachineFacts& facts) { return folder(facts.logs, "XDG_STATE_HOME"); }

Diagnosis resources(const MachineFacts& facts) {
    const FolderFacts& folder = facts.resources;
    if (!folder.exists)
        return {kMissing, fmt::format("{} isn't there", folder.path.value_or("").string()),
                "install the program again, or build it"};
    return {kFine, folder.path->string()};
}

Diagnosis painting(const MachineFacts& facts) {
    if (facts.paintingTrouble.empty())
        return {kFine, "pictures and texts can be painted"};
    return {kLimited, fmt::format("{}; the item shows as text only", facts.paintingTrouble),
            "install the program again, with its libvantor-painting.so"};
}

Diagnosis terminal(const MachineFacts& facts) {
    const TerminalFacts& terminal = facts.terminal;
    if (!terminal.isTerminal)
        return {kFine, "none here; `run` then writes a line of JSON for each sample"};
    constexpr std::array<std::string_view, 4> kColours{"no colour", "basic colours", "256 colours",
                                                       "full colour"};
    const auto& [glyphs, colours, cursor] = terminal.abilities;
    const std::string what =
        fmt::format("{}, {} by {}, {}, {}", terminal.name.empty() ? "unnamed" : terminal.name,
                    terminal.columns, terminal.rows, kColours[static_cast<std::size_t>(colours)],
                    glyphs == Glyphs::unicode ? "block characters" : "plain characters");
    if (cursor == Cursor::fixed)
        return {kLimited, what + "; only one line for each sample",
                "set TERM to what the terminal really is"};
    if (terminal.codeset != "UTF-8")
        return {kLimited, what, "choose a UTF-8 locale that is installed, such as LANG=C.UTF-8"};
    return {kFine, what};
}

struct Check {
    std::string_view name;
    Diagnosis (*diagnose)(const MachineFacts& facts);
};

constexpr std::array kChecks{
    Check{"Machine", machine},
    Check{"Processors", processors},
    Check{"Processors offline", offlineProcessors},
    Check{"Processor counters", counters},
    Check{"Processes", processes},
    Check{"Load average", loads},
    Check{"Boot time", bootTime},
    Check{"Session bus", sessionBus},
    Check{"Appearance", appearance},
    Check{"Sleep and wake", sleepNotices},
    Check{"Settings", preferences},
    Check{"Settings folder", settingsFolder},
    Check{"History folder", historyFolder},
    Check{"Log folder", logFolder},
    Check{"Resources", resources},
    Check{"Painting", painting},
    Check{"Terminal", terminal},
    Check{"Device names", deviceNames},
};

constexpr std::array<std::string_view, 3> kVerdictTexts{"ok", "limited", "MISSING"};

}  // namespace

std::vector<Finding> examine(const MachineFacts& facts) {
    std::vector<Finding> findings;
    for (const Check& check : kChecks) {
        Diagnosis diagnosis = check.diagnose(facts);
        findings.push_back({check.name, diagnosis.verdict, std::move(diagnosis.what),
                            std::move(diagnosis.remedy)});
    }
    if (facts.graphics.empty())
        findings.push_back({"Graphics", kFine, "none on the PCI bus", ""});
    for (const GraphicsFacts& graphics : facts.graphics) {
        Diagnosis diagnosis = graphicsProcessor(graphics);
        findings.push_back({"Graphics", diagnosis.verdict, std::move(diagnosis.what),
                            std::move(diagnosis.remedy)});
    }
    return findings;
}

std::string report(std::span<const Finding> findings) {
    std::string text;
    for (const Finding& finding : findings) {
        fmt::format_to(std::back_inserter(text), "{:8} {:19} {}\n",
                       kVerdictTexts[static_cast<std::size_t>(finding.verdict)], finding.name,
                       finding.what);
        if (!finding.remedy.empty())
            fmt::format_to(std::back_inserter(text), "{:28} -> {}\n", "", finding.remedy);
    }
    return text;
}

int statusOf(std::span<const Finding> findings) noexcept {
    return std::ranges::any_of(findings,
                               [](const Finding& each) { return each.verdict == kMissing; })
               ? 1
               : 0;
}

}  // namespace vantor
