#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/Text/TerminalShape.h"
#include "Platform/ProcessorCounters.h"

namespace vantor {

class Registry;
struct Ports;

/// A place for files, and whether they could be made there.
struct FolderFacts {
    std::optional<std::filesystem::path> path;  // nothing where the user has no such place
    bool exists = false;
    bool isWritable = false;  // or its first parent that exists
};

struct ProcessorFacts {
    std::size_t cpus = 0;
    std::int64_t logicalCores = 0, physicalCores = 0;
    bool countersReadable = false;
    ProcessCounts processes;
    std::string offline;  // numbers of CPUs as the kernel lists them, "4-7"
};

struct PreferenceFacts {
    enum class State { absent, readable, damaged, unreadable };
    std::optional<std::filesystem::path> file;
    State state = State::absent;
    std::size_t keys = 0;
    std::string reason;  // of an unreadable one
};

struct BusFacts {
    bool isThere = false;
    bool servesUs = false;  // logind on the system's bus, the settings portal on the session's
};

struct TerminalFacts {
    bool isTerminal = false;
    std::string name, codeset;
    TerminalAbilities abilities;
    std::size_t columns = 0, rows = 0;
};

/// What the machine says of itself; nothing where it doesn't.
struct IdentityFacts {
    std::optional<std::string> model, processor;
    std::optional<std::int64_t> memoryBytes;
};

struct GraphicsFacts {
    std::string model, driver;  // "" for one that nobody drives
    std::string power;          // "asleep", "waking", "resting" or "awake"; "" where unknown
    std::uint64_t memoryBytes = 0;
    bool tellsMemory = false, tellsLoad = false;
};

/// What the doctor looks at.
struct MachineFacts {
    IdentityFacts identity;
    std::vector<GraphicsFacts> graphics;
    bool hasDeviceNames = true;
    ProcessorFacts processors;
    double load = 0;  // over one minute
    std::optional<std::int64_t> bootSeconds;
    BusFacts sessionBus, systemBus;
    PreferenceFacts preferences;
    FolderFacts applicationSupport, logs, preferenceFolder, resources;
    std::string paintingTrouble;  // why nothing can be painted, or ""
    TerminalFacts terminal;
};

/// What the ports tell. Changes nothing.
MachineFacts factsFromPorts(const Ports& ports);
/// What the registry tells of graphics processors. Some drivers answer only the second time.
std::vector<GraphicsFacts> graphicsFacts(Registry& registry);
/// Adds what only the process itself can find out: its terminal, its buses and what
/// it paints with.
void addFactsOfThisProcess(MachineFacts& facts);

FolderFacts folderFacts(const std::optional<std::filesystem::path>& path);
PreferenceFacts preferenceFacts(const std::optional<std::filesystem::path>& folder);

}  // namespace vantor
