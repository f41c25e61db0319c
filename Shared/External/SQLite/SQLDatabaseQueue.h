#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLTransaction.h"

namespace vantor {
class SerialQueue;
class WorkQueues;
}  // namespace vantor

namespace vantor::inline VANTOR_MODULE {

/// One connection behind a serial queue, for any number of threads.
/// Errors: a closure is given null where the connection was closed and can't be opened again.
/// Thread: any but the queue's own. `inDatabase` on the queue ends the process; the other
///         operations would wait for themselves.
class SQLDatabaseQueue {
public:
    using Closure = std::function<void(SQLDatabase* database)>;
    using Error = std::optional<SQLError>;
    /// What makes the connections.
    using DatabaseClass = std::function<std::shared_ptr<SQLDatabase>(
        SQLEnvironment& environment, std::optional<std::filesystem::path> path)>;

    static constexpr std::int32_t kReadWriteCreate = 6;

    /// Null where the file can't be opened. Without a path the database is in memory.
    static std::unique_ptr<SQLDatabaseQueue>
    databaseQueueWithPath(SQLEnvironment& environment, WorkQueues& workQueues,
                          std::optional<std::filesystem::path> path,
                          std::int32_t flags = kReadWriteCreate,
                          DatabaseClass databaseClass = &SQLDatabase::databaseWithPath);
    ~SQLDatabaseQueue();
    SQLDatabaseQueue(const SQLDatabaseQueue&) = delete;
    SQLDatabaseQueue& operator=(const SQLDatabaseQueue&) = delete;

    /// Closes the connection; whoever asks for it next opens another.
    void close();
    /// Only on the queue.
    SQLDatabase* database();
    void inDatabase(const Closure& closure);
    void inTransaction(const SQLTransactionClosure& closure);
    void inDeferredTransaction(const SQLTransactionClosure& closure);
    void beginTransaction(SQLTransaction kind, const SQLTransactionClosure& withBlock);
    Error inSavePoint(const SQLTransactionClosure& closure);

    const std::optional<std::filesystem::path>& path() const noexcept { return path_; }
    std::int32_t openFlags() const noexcept { return openFlags_; }

private:
    SQLDatabaseQueue(SQLEnvironment& environment, WorkQueues& workQueues,
                     std::optional<std::filesystem::path> path, std::int32_t flags,
                     DatabaseClass databaseClass);

    SQLEnvironment& environment_;
    DatabaseClass databaseClass_;
    std::optional<std::filesystem::path> path_;
    std::int32_t openFlags_;
    std::shared_ptr<SQLDatabase> db_;
    std::unique_ptr<SerialQueue> queue_;  // ends first, when it has run what it had
};

}  // namespace vantor::inline VANTOR_MODULE
