#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vantor::test {

/// One run of the program on a scripted machine, in a process of its own that may be killed.
struct Victim {
    std::filesystem::path folder;  // the machine's files
    double start = 0, seconds = 0;
    double faultsEnd = -1;  // seconds after the start; never, if negative

    /// What goes wrong, as FileFaults.cpp reads it from the environment.
    struct Faults {
        std::string kind{};
        long first = 0, last = 0;
        long fileLimitBytes = 0;  // how large a file may be; 0 for any size
    };
    struct Report {
        bool ended = false;  // by itself, in good order
        long calls = 0;      // that change files
        long measured = 0, mostWaiting = 0;
        /// The digests of each file after each of its commits.
        std::map<std::string, std::vector<std::size_t>> commits;
    };

    /// Runs `program` as a victim under `library`, the faults' own.
    Report run(const std::filesystem::path& program, const std::filesystem::path& library,
               const Faults& faults) const;
};

inline constexpr const char* kVictimsFiles[]{"cpu.db", "load.db"};
std::filesystem::path databasesIn(const std::filesystem::path& folder);

/// The victim's own side of it: FOLDER START SECONDS FAULTSEND FILELIMIT REPORT.
int beVictim(const std::vector<std::string>& words);

}  // namespace vantor::test
