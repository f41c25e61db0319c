#include "Shared/External/SQLite/SQLDatabasePool.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "Platform/WorkQueues.h"

namespace vantor::inline VANTOR_MODULE {

SQLDatabaseAlreadyInPool::SQLDatabaseAlreadyInPool()
    : std::logic_error(
          "The SQLDatabase being put back into the pool is already present in the pool") {}

SQLDatabasePool::SQLDatabasePool(SQLEnvironment& environment, WorkQueues& workQueues,
                                 std::optional<std::filesystem::path> path, std::int32_t flags)
    : environment_(environment), path_(std::move(path)), openFlags_(flags),
      lockQueue_(workQueues.makeSerialQueue(
          fmt::format("sqldatabase.<SQLDatabasePool: {}>", fmt::ptr(this)))) {}

std::unique_ptr<SQLDatabasePool>
SQLDatabasePool::databasePoolWithPath(SQLEnvironment& environment, WorkQueues& workQueues,
                                      std::optional<std::filesystem::path> path,
                                      std::int32_t flags) {
    return std::make_unique<SQLDatabasePool>(environment, workQueues, std::move(path), flags);
}

SQLDatabasePool::~SQLDatabasePool() = default;

void SQLDatabasePool::executeLocked(Task task) { lockQueue_->sync(std::move(task)); }

std::shared_ptr<SQLDatabase> SQLDatabasePool::db() {
    std::shared_ptr<SQLDatabase> database;
    executeLocked([&] { database = takeDatabase(); });
    return database;
}

std::shared_ptr<SQLDatabase> SQLDatabasePool::takeDatabase() {
    const bool isOld = !databaseInPool_.empty();
    if (!isOld && maximum_ != 0 && databaseOutPool_.size() >= maximum_)
        return nullptr;
    std::shared_ptr<SQLDatabase> database;
    if (isOld) {
        database = std::move(databaseInPool_.back());
        databaseInPool_.pop_back();
    } else {
        database = SQLDatabase::databaseWithPath(environment_, path_);
    }
    if (!opensFor(*database))
        return nullptr;
    databaseOutPool_.push_back(database);
    if (!isOld && delegate_ != nullptr)
        delegate_->didAddDatabase(*this, *database);
    return database;
}

/// Whether the connection could be opened and is wanted.
bool SQLDatabasePool::opensFor(SQLDatabase& database) {
    if (!database.openWithFlags(openFlags_))
        return false;
    if (delegate_ == nullptr || delegate_->shouldAddDatabaseToPool(*this, database))
        return true;
    database.close();
    return false;
}

void SQLDatabasePool::pushDatabaseBackInPool(const std::shared_ptr<SQLDatabase>& database) {
    if (!database)
        return;
    bool taken = false;
    executeLocked([&] { taken = takeBack(database); });
    if (!taken)  // thrown here: a queue's task throws nothing
        throw SQLDatabaseAlreadyInPool();
}

bool SQLDatabasePool::takeBack(const std::shared_ptr<SQLDatabase>& database) {
    if (std::ranges::find(databaseInPool_, database) != databaseInPool_.end())
        return false;
    databaseInPool_.push_back(database);
    std::erase(databaseOutPool_, database);
    return true;
}

std::size_t SQLDatabasePool::countOfCheckedInDatabases() {
    std::size_t count = 0;
    executeLocked([&] { count = databaseInPool_.size(); });
    return count;
}

std::size_t SQLDatabasePool::countOfCheckedOutDatabases() {
    std::size_t count = 0;
    executeLocked([&] { count = databaseOutPool_.size(); });
    return count;
}

std::size_t SQLDatabasePool::countOfOpenDatabases() {
    std::size_t count = 0;
    executeLocked([&] { count = databaseInPool_.size() + databaseOutPool_.size(); });
    return count;
}

void SQLDatabasePool::releaseAllDatabases() {
    executeLocked([this] {
        databaseInPool_.clear();
        databaseOutPool_.clear();
    });
}

void SQLDatabasePool::inDatabase(const Closure& closure) {
    const auto database = db();
    closure(database.get());
    pushDatabaseBackInPool(database);
}

void SQLDatabasePool::inTransaction(const SQLTransactionClosure& closure) {
    beginTransaction(SQLTransaction::exclusive, closure);
}

void SQLDatabasePool::inDeferredTransaction(const SQLTransactionClosure& closure) {
    beginTransaction(SQLTransaction::deferred, closure);
}

void SQLDatabasePool::beginTransaction(SQLTransaction kind,
                                       const SQLTransactionClosure& withBlock) {
    inDatabase([&](SQLDatabase* database) { runTransaction(database, kind, withBlock); });
}

SQLDatabasePool::Error SQLDatabasePool::inSavePoint(const SQLTransactionClosure& closure) {
    const std::string name = fmt::format("savePoint{}", environment_.poolSavePoints++);
    Error error;
    inDatabase([&](SQLDatabase* database) { error = runSavePoint(database, name, closure); });
    return error;
}

}  // namespace vantor::inline VANTOR_MODULE
