#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Ports.h"
#include "Shared/Database/HistoryDatabaseItem.h"

namespace vantor::inline VANTOR_MODULE {

/// Every history file that is open in this process, by the last component of its path alone: the
/// system has a single directory of databases.
/// Thread: items are made by the start-up work of a module, before sampling begins; afterwards
///         the table is only read.
class HistoryDatabaseController {
public:
    explicit HistoryDatabaseController(const Ports& ports);
    ~HistoryDatabaseController();

    static HistoryDatabaseController& sharedHistoryDatabaseController();

    /// The item of that file, opened on first use; null without a path.
    std::shared_ptr<HistoryDatabaseItem>
    databaseWithPath(const std::optional<std::filesystem::path>& path);
    /// Closes the file, if it is open, and forgets its item. Who still has the item finds its
    /// connection closed.
    void closeDatabase(const std::filesystem::path& path);
    /// Closes the file and removes it.
    void deleteDatabase(const std::filesystem::path& path);
    /// Puts a copy of `backup`, if there is one, in the place of the file. A damaged one leaves no
    /// file there. `backup` stays as it is.
    void restoreBackup(const std::filesystem::path& backup, const std::filesystem::path& toPath);

private:
    Ports ports_;
    std::map<std::string, std::shared_ptr<HistoryDatabaseItem>, std::less<>> databases_;
};

/// The item of that file; null without a path.
std::shared_ptr<HistoryDatabaseItem>
databaseItemWithPath(const std::optional<std::filesystem::path>& path);
/// The connection of that item, or null.
SQLDatabase* databaseWithPath(const std::optional<std::filesystem::path>& path);

}  // namespace vantor::inline VANTOR_MODULE
