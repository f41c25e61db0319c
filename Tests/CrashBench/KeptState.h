#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vantor::test {

/// What is in one history file.
struct KeptState {
    struct Row {
        double sampleID = 0, time = 0;
        std::string text;  // all columns
        bool operator==(const Row&) const = default;
    };
    std::map<std::string, std::vector<Row>> tables;  // by rising ID

    /// Reads the file, taking back what was cut short as any connection does; without a file
    /// nothing is kept. `integrity` is SQLite's report.
    static KeptState of(const std::filesystem::path& file, std::string& integrity);
    /// The same beside a connection that is open, changing nothing.
    static KeptState besideOthers(const std::filesystem::path& file);

    std::size_t rows() const;
    /// The same for the same contents, in any process.
    std::size_t digest() const;
};

/// What is wrong with `after`, which a program has gone on from `before` on to write; "" where
/// nothing is. Whole rows stay until newer ones push them out.
std::string lossFrom(const KeptState& before, const KeptState& after);
enum class IDs { dense, rising };
std::string disorderIn(const KeptState& state, IDs ids);

}  // namespace vantor::test
