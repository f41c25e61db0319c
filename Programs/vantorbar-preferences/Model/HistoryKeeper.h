#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vantor {

/// What is kept of the time gone by.
struct HistoryFacts {
    std::size_t files = 0;
    std::uintmax_t bytes = 0;
    bool operator==(const HistoryFacts&) const = default;
};

/// The history files of a user: told about, copied out and emptied, also while a program writes
/// them.
/// Errors: what can't be done with a file is told in lines for people; the others go on.
/// Thread: any; waits for the lock of a program that is writing, two seconds a file at most.
class HistoryKeeper {
public:
    using Complaints = std::vector<std::string>;

    explicit HistoryKeeper(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& folder() const noexcept { return folder_; }
    HistoryFacts facts() const;

    /// Writes every table as SOURCE-SCALE.csv; what has such a name there is replaced.
    Complaints exportTo(const std::filesystem::path& target) const;

    /// Takes all samples out of every file, each in one transaction, and makes the files small. The
    /// files and their tables stay: a program that has them open goes on with them. What it keeps
    /// in memory stays there until it ends, and what it has measured since its last commit still
    /// comes.
    Complaints clear() const;

private:
    std::vector<std::filesystem::path> files() const;

    std::filesystem::path folder_;
};

}  // namespace vantor
