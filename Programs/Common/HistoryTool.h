#pragma once

#include <filesystem>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "Programs/Common/HistoryFileReader.h"
#include "Programs/Common/HistorySource.h"

namespace vantor {

enum class HistoryListFormat { table, json };
enum class HistoryExportFormat { csv, json };

/// Which samples are exported, and how.
struct HistoryExport {
    std::string source{}, scale = "hour";
    HistoryExportFormat format = HistoryExportFormat::csv;
    double since = -std::numeric_limits<double>::infinity();  // seconds since 1970
    bool combined = false;                                    // the file of a combined item
};

/// What `history` does with the files of one folder: shows what is in them, also while a program
/// is writing them.
/// Errors: each operation answers the exit status: 0, or 1 where a file is missing, can't be read
///         or, for `check`, isn't as the program writes it. The reason is a line on `err`.
class HistoryTool {
public:
    HistoryTool(std::filesystem::path folder, std::ostream& out, std::ostream& err);

    /// Every table: first and last time, rows and gaps.
    int list(HistoryListFormat format) const;
    /// The samples of one scale, a gap without figures.
    int exportSamples(const HistoryExport& wanted) const;
    /// Whether the files are whole, their IDs dense and rising, and their times rising.
    int check() const;

private:
    struct File {
        const HistorySource& source;
        HistoryFileReader reader;
        std::string name() const { return reader.file().filename().string(); }
    };

    std::vector<File> files() const;
    std::vector<std::string> findings(const File& file) const;
    int forEachFile(const auto& work) const;
    int complain(std::string_view complaint) const;

    std::filesystem::path folder_;
    std::ostream& out_;
    std::ostream& err_;
    std::vector<HistorySource> sources_ = historySources();
};

/// The name of a source's file.
std::string historyFileName(std::string_view source, bool combined);

}  // namespace vantor
