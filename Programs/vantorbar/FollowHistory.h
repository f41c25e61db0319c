#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <limits>
#include <string>

namespace vantor {

/// Which samples are followed, and how far.
struct FollowOptions {
    std::string source{}, scale = "hour";
    bool combined = false;  // the file of a combined item
    double since = 0;       // an ID
    std::size_t count = std::numeric_limits<std::size_t>::max();
    std::filesystem::path scenario{};
};

/// Follows the file that a running program writes every 144 seconds, until `count` lines are
/// written. The exit status: 0, or 1 with one line on `err` where the file can't be read when it
/// begins. Later trouble is waited for, because a program may be writing or replacing the file.
int followFolder(const FollowOptions& options, const std::filesystem::path& folder,
                 std::ostream& out, std::ostream& err);

/// Runs a scripted machine to its end and follows what it writes, in virtual time. The exit status:
/// 0, or 2 with one line on `err` where the scenario isn't one.
int followScenario(const FollowOptions& options, std::ostream& out, std::ostream& err);

}  // namespace vantor
