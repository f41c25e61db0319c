#include "Shared/Database/HistoryDatabaseController.h"

#include <system_error>

#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

namespace fs = std::filesystem;

/// The last component, also of a path that ends in a slash.
std::string keyOf(const fs::path& path) {
    return (path.has_filename() ? path : path.parent_path()).filename().string();
}

void removeFile(const fs::path& path) {
    std::error_code ignored;  // what can't be removed is found damaged again at the next start
    fs::remove(path, ignored);
}

void copyFile(const fs::path& from, const fs::path& to) {
    std::error_code ignored;  // the copy is checked by whoever opens it
    fs::copy_file(from, to, ignored);
}

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

}  // namespace

HistoryDatabaseController::HistoryDatabaseController(const Ports& ports) : ports_(ports) {}
HistoryDatabaseController::~HistoryDatabaseController() = default;

HistoryDatabaseController& HistoryDatabaseController::sharedHistoryDatabaseController() {
    return ProcessContext::current().historyDatabaseController();
}

std::shared_ptr<HistoryDatabaseItem>
HistoryDatabaseController::databaseWithPath(const std::optional<fs::path>& path) {
    if (!path)
        return nullptr;
    auto& item = databases_[keyOf(*path)];
    if (!item)
        item = std::make_shared<HistoryDatabaseItem>(ports_, *path);
    return item;
}

void HistoryDatabaseController::closeDatabase(const fs::path& path) {
    const auto found = databases_.find(keyOf(path));
    if (found == databases_.end())
        return;
    found->second->close();
    databases_.erase(found);
}

void HistoryDatabaseController::deleteDatabase(const fs::path& path) {
    closeDatabase(path);
    removeFile(path);
}

void HistoryDatabaseController::restoreBackup(const fs::path& backup, const fs::path& toPath) {
    if (!isThere(backup))
        return;
    closeDatabase(toPath);
    removeFile(toPath);
    copyFile(backup, toPath);
    if (databaseWithPath(toPath)->database().isDatabaseValid())
        return;
    deleteDatabase(toPath);
    removeFile(toPath);
}

std::shared_ptr<HistoryDatabaseItem> databaseItemWithPath(const std::optional<fs::path>& path) {
    return HistoryDatabaseController::sharedHistoryDatabaseController().databaseWithPath(path);
}

SQLDatabase* databaseWithPath(const std::optional<fs::path>& path) {
    const auto item = databaseItemWithPath(path);
    return item ? &item->database() : nullptr;
}

}  // namespace vantor::inline VANTOR_MODULE
