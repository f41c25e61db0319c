#include "Shared/External/SQLite/SQLDatabaseQueue.h"

#include <utility>

#include <fmt/format.h>

#include "Platform/WorkQueues.h"
#include "Shared/Assertion.h"

namespace vantor::inline VANTOR_MODULE {

std::unique_ptr<SQLDatabaseQueue>
SQLDatabaseQueue::databaseQueueWithPath(SQLEnvironment& environment, WorkQueues& workQueues,
                                        std::optional<std::filesystem::path> path,
                                        std::int32_t flags, DatabaseClass databaseClass) {
    std::unique_ptr<SQLDatabaseQueue> queue(new SQLDatabaseQueue(
        environment, workQueues, std::move(path), flags, std::move(databaseClass)));
    return queue->database() == nullptr ? nullptr : std::move(queue);
}

SQLDatabaseQueue::SQLDatabaseQueue(SQLEnvironment& environment, WorkQueues& workQueues,
                                   std::optional<std::filesystem::path> path, std::int32_t flags,
                                   DatabaseClass databaseClass)
    : environment_(environment), databaseClass_(std::move(databaseClass)), path_(std::move(path)),
      openFlags_(flags), queue_(workQueues.makeSerialQueue(
                             fmt::format("sqldatabase.<SQLDatabaseQueue: {}>", fmt::ptr(this)))) {}

SQLDatabaseQueue::~SQLDatabaseQueue() = default;

void SQLDatabaseQueue::close() {
    queue_->sync([this] {
        if (db_)
            db_->close();
        db_.reset();
    });
}

SQLDatabase* SQLDatabaseQueue::database() {
    if (!db_)
        db_ = databaseClass_(environment_, path_);
    if (!db_->openWithFlags(openFlags_))
        db_.reset();
    return db_.get();
}

void SQLDatabaseQueue::inDatabase(const Closure& closure) {
    if (queue_->isCurrent())
        failAssertion(
            environment_.systemLog,
            "currentSyncQueue != self && \"inDatabase: was called reentrantly on the same "
            "queue, which would lead to a deadlock\"");
    queue_->sync([this, &closure] { closure(database()); });
}

void SQLDatabaseQueue::inTransaction(const SQLTransactionClosure& closure) {
    beginTransaction(SQLTransaction::exclusive, closure);
}

void SQLDatabaseQueue::inDeferredTransaction(const SQLTransactionClosure& closure) {
    beginTransaction(SQLTransaction::deferred, closure);
}

void SQLDatabaseQueue::beginTransaction(SQLTransaction kind,
                                        const SQLTransactionClosure& withBlock) {
    queue_->sync([this, kind, &withBlock] { runTransaction(database(), kind, withBlock); });
}

SQLDatabaseQueue::Error SQLDatabaseQueue::inSavePoint(const SQLTransactionClosure& closure) {
    const std::string name = fmt::format("savePoint{}", environment_.queueSavePoints++);
    Error error;
    queue_->sync([&] { error = runSavePoint(database(), name, closure); });
    return error;
}

}  // namespace vantor::inline VANTOR_MODULE
