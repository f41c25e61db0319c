#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "Foundation/Task.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLTransaction.h"

namespace vantor {
class SerialQueue;
class WorkQueues;
}  // namespace vantor

namespace vantor::inline VANTOR_MODULE {

class SQLDatabasePool;

/// Hears of the connections that a pool makes. Called while the pool is locked.
class SQLDatabasePoolDelegate {
public:
    virtual ~SQLDatabasePoolDelegate() = default;
    virtual bool shouldAddDatabaseToPool(SQLDatabasePool&, SQLDatabase&) { return true; }
    virtual void didAddDatabase(SQLDatabasePool&, SQLDatabase&) {}
};

/// A connection was put back that was there already.
class SQLDatabaseAlreadyInPool : public std::logic_error {
public:
    static constexpr std::string_view kName = "Database already in pool";
    SQLDatabaseAlreadyInPool();
};

/// Connections to one file, as many as are wanted at once; those put back are handed out again.
/// Errors: there is no connection where the file can't be opened, the delegate doesn't want it, or
///         the most are out; closures are given null then.
/// Thread: any. What is inside is touched on the pool's own queue only.
class SQLDatabasePool {
public:
    using Closure = std::function<void(SQLDatabase* database)>;
    using Error = std::optional<SQLError>;

    static constexpr std::int32_t kReadWriteCreate = 6;

    SQLDatabasePool(SQLEnvironment& environment, WorkQueues& workQueues,
                    std::optional<std::filesystem::path> path,
                    std::int32_t flags = kReadWriteCreate);
    static std::unique_ptr<SQLDatabasePool>
    databasePoolWithPath(SQLEnvironment& environment, WorkQueues& workQueues,
                         std::optional<std::filesystem::path> path,
                         std::int32_t flags = kReadWriteCreate);
    ~SQLDatabasePool();
    SQLDatabasePool(const SQLDatabasePool&) = delete;
    SQLDatabasePool& operator=(const SQLDatabasePool&) = delete;

    std::shared_ptr<SQLDatabase> db();
    /// Throws SQLDatabaseAlreadyInPool.
    void pushDatabaseBackInPool(const std::shared_ptr<SQLDatabase>& database);
    /// Runs `task` on the pool's queue, which is its lock, and returns when it has run.
    void executeLocked(Task task);
    std::size_t countOfCheckedInDatabases();
    std::size_t countOfCheckedOutDatabases();
    std::size_t countOfOpenDatabases();
    void releaseAllDatabases();

    void inDatabase(const Closure& closure);
    void inTransaction(const SQLTransactionClosure& closure);
    void inDeferredTransaction(const SQLTransactionClosure& closure);
    void beginTransaction(SQLTransaction kind, const SQLTransactionClosure& withBlock);
    Error inSavePoint(const SQLTransactionClosure& closure);

    const std::optional<std::filesystem::path>& path() const noexcept { return path_; }
    std::int32_t openFlags() const noexcept { return openFlags_; }
    /// The pool doesn't own it.
    void setDelegate(SQLDatabasePoolDelegate* delegate) noexcept { delegate_ = delegate; }
    SQLDatabasePoolDelegate* delegate() const noexcept { return delegate_; }
    /// 0 is no limit. Those free and those out count.
    std::uint64_t maximumNumberOfDatabasesToCreate() const noexcept { return maximum_; }
    void setMaximumNumberOfDatabasesToCreate(std::uint64_t most) noexcept { maximum_ = most; }

private:
    using Databases = std::vector<std::shared_ptr<SQLDatabase>>;

    std::shared_ptr<SQLDatabase> takeDatabase();
    bool opensFor(SQLDatabase& database);
    bool takeBack(const std::shared_ptr<SQLDatabase>& database);

    SQLEnvironment& environment_;
    std::optional<std::filesystem::path> path_;
    std::int32_t openFlags_;
    SQLDatabasePoolDelegate* delegate_ = nullptr;
    std::uint64_t maximum_ = 0;
    Databases databaseInPool_, databaseOutPool_;  // free, and handed out
    std::unique_ptr<SerialQueue> lockQueue_;
};

}  // namespace vantor::inline VANTOR_MODULE
