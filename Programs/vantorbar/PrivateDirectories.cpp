#include "Programs/vantorbar/PrivateDirectories.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <fmt/format.h>
#include <stdlib.h>

#include "Platform/SystemLog.h"
#include "Programs/Common/HistorySource.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLOpenFlags.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDatabases = "Vantor Bar/databases";

class SilentLog final : public SystemLog {
public:
    void write(std::string_view) noexcept override {}
};

fs::path makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "vantorbar.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw fs::filesystem_error("can't make a folder", pattern,
                                   std::error_code(errno, std::generic_category()));
    return pattern;
}

/// Under a lock for reading, which keeps a program that writes the file waiting. One whose last
/// write was cut short can't be read without putting it right, which is its owner's affair.
void copyHistoryFile(const fs::path& file, const fs::path& copy) {
    std::error_code ignored;  // what can't be looked at or copied is no history
    if (!fs::is_regular_file(file, ignored))
        return;
    SilentLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment, file);
    if (!database.openWithFlags(kSQLOpenReadOnly) || !database.beginDeferredTransaction())
        return;
    const auto rows = database.executeQuery("SELECT count(*) FROM sqlite_master");
    if (rows && rows->next())
        fs::copy_file(file, copy, ignored);
}

}  // namespace

PrivateDirectories::PrivateDirectories(const Directories& own) : own_(own), folder_(makeFolder()) {
    const auto support = own.applicationSupport();
    if (!support)
        return;
    std::error_code ignored;  // without the folder nothing is copied into it
    fs::create_directories(folder_ / kDatabases, ignored);
    for (const HistorySource& source : historySources()) {
        const fs::path file = fs::path(kDatabases) / fmt::format("{}.db", source.name);
        copyHistoryFile(*support / file, folder_ / file);
    }
}

PrivateDirectories::~PrivateDirectories() {
    std::error_code ignored;  // nothing more can be done about what stays
    fs::remove_all(folder_, ignored);
}

}  // namespace vantor
