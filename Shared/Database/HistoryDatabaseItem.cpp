#include "Shared/Database/HistoryDatabaseItem.h"

#include <atomic>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "Platform/SystemLog.h"
#include "Platform/Witness.h"
#include "Platform/WorkQueues.h"
#include "Shared/Assertion.h"
#include "Shared/Database/HistoryRecordList.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/External/SQLite/SQLPatience.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kReentrant =
    "inDatabase: was called reentrantly on the same queue, which would lead to a deadlock";
constexpr std::string_view kOpenCursor =
    "Warning: there is at least one open result set around after performing "
    "[SQLDatabaseQueue inDatabase:]";

bool isFarTooLarge(const std::filesystem::path& file) {
    std::error_code unknown;  // then it isn't a file that can be read
    const std::uintmax_t bytes = std::filesystem::file_size(file, unknown);
    return !unknown && bytes > HistoryDatabaseItem::kFarTooLargeBytes;
}

/// `record`'s statement with the name of its table in it, in the room of `sql`.
void fillStatement(const HistoryRecord& record, std::string& sql) {
    constexpr std::string_view kTable = "%@";
    const std::string_view format = record.format();
    const auto at = format.find(kTable);
    sql = format.substr(0, at);
    if (at != format.npos)
        (sql += record.table()) += format.substr(at + kTable.size());
}

}  // namespace

struct HistoryDatabaseItem::Parts {
    Parts(const Ports& allPorts, const std::filesystem::path& file, const SQLBusyWait& busyWait);

    void openDatabase();
    void addItem(HistoryRecord record);
    void commit();
    void tryToRead();
    void commitBatch();
    void takeBatch();
    void forgetWrites();
    std::size_t writeBatch();
    void query(const Closure& closure);
    [[noreturn]] void failReentrant();

    Ports ports;
    std::string name;  // the file's, without its folder
    std::optional<std::filesystem::path> path;
    SQLEnvironment environment;
    SQLDatabase database;
    bool isHuge = false;
    std::atomic<bool> busy = false;

    std::mutex mutex;           // guards the next two
    HistoryRecordList waiting;  // the queries
    bool toldOfDropped = false;

    HistoryRecordList batch;  // the queue's own, as are the next three
    std::string sql;
    enum class Writes { allowed, held, awaited } writes = Writes::allowed;
    Attempt attempt;                     // of a file whose writes are held
    std::unique_ptr<SerialQueue> queue;  // ends first, when it has run what it had
};

HistoryDatabaseItem::Parts::Parts(const Ports& allPorts, const std::filesystem::path& file,
                                  const SQLBusyWait& busyWait)
    : ports(allPorts), name(file.filename().string()), environment(ports.systemLog, busyWait),
      database(environment, file),
      queue(ports.workQueues.makeSerialQueue(fmt::format("dbqueue-{}", name))) {}

void HistoryDatabaseItem::Parts::openDatabase() {
    database.setLogsErrors(false);
    database.setShouldCacheStatements(true);
    if (!database.open())
        LGLogInfo("Could not open db.");
    isHuge = isFarTooLarge(*database.databasePath());
}

void HistoryDatabaseItem::Parts::addItem(HistoryRecord record) {
    bool tells = false;
    {
        const std::scoped_lock lock(mutex);
        tells = !waiting.push(std::move(record)) && !std::exchange(toldOfDropped, true);
    }
    if (tells)
        ports.systemLog.write(fmt::format(
            "The history of {} isn't being written; its oldest samples are dropped.", name));
}

void HistoryDatabaseItem::Parts::commit() {
    if (writes == Writes::allowed)
        commitBatch();
    else if (writes == Writes::held)
        tryToRead();
}

void HistoryDatabaseItem::Parts::tryToRead() {
    takeBatch();
    const std::size_t statements = batch.size();
    batch.clear();
    if (attempt(database))
        writes = Writes::awaited;
    if (ports.witness != nullptr)
        ports.witness->committed(name, statements, statements);
}

/// The transaction's beginning isn't asked for: without one each statement is written by itself.
/// One that an end was refused for is still there at the next batch, whose statements join it and
/// whose end ends it.
void HistoryDatabaseItem::Parts::commitBatch() {
    busy = true;
    takeBatch();
    const std::size_t statements = batch.size();
    database.beginTransaction();
    std::size_t failed = writeBatch();
    busy = false;
    batch.clear();
    const bool wasOpen = database.isTransactionOpen();
    if (!database.commit() && wasOpen && !database.isTransactionOpen())
        failed = statements;
    if (ports.witness != nullptr)
        ports.witness->committed(name, statements, failed);
}

/// Here, on the queue, so that the batch has what was added up to now.
void HistoryDatabaseItem::Parts::takeBatch() {
    const std::scoped_lock lock(mutex);
    std::swap(batch, waiting);
    toldOfDropped = false;
}

void HistoryDatabaseItem::Parts::forgetWrites() {
    const std::scoped_lock lock(mutex);
    waiting.clear();
    toldOfDropped = false;
}

/// Answers how many of its statements failed. Where SQLite takes the transaction back because of
/// one, all before it have failed as well.
std::size_t HistoryDatabaseItem::Parts::writeBatch() {
    bool isOpen = database.isTransactionOpen();
    std::size_t failed = 0;
    for (std::size_t index = 0; index < batch.size(); ++index) {
        fillStatement(batch[index], sql);
        failed += database.executeUpdate(sql, batch[index].args()) ? 0 : 1;
        if (std::exchange(isOpen, isOpen && database.isTransactionOpen()) && !isOpen)
            failed = index + 1;
    }
    return failed;
}

void HistoryDatabaseItem::Parts::query(const Closure& closure) {
    {
        std::optional<SQLPatience> patience;
        if (isHuge)
            patience.emplace(ports.mainQueue, database, kPatienceSeconds);
        closure(database);
    }
    if (database.hasOpenResultSets())
        LGLogInfo(kOpenCursor);
}

void HistoryDatabaseItem::Parts::failReentrant() {
    LGLogInfo(kReentrant);
    failAssertion(ports.systemLog, fmt::format("currentSyncQueue != self && \"{}\"", kReentrant));
}

HistoryDatabaseItem::HistoryDatabaseItem(const Ports& ports, const std::filesystem::path& path,
                                         const SQLBusyWait& busyWait)
    : parts_(std::make_unique<Parts>(ports, path, busyWait)) {
    parts_->queue->sync([parts = parts_.get()] { parts->openDatabase(); });
}

HistoryDatabaseItem::~HistoryDatabaseItem() = default;

void HistoryDatabaseItem::addItem(HistoryRecord record) { parts_->addItem(std::move(record)); }

void HistoryDatabaseItem::commit() {
    parts_->queue->async([parts = parts_.get()] { parts->commit(); });
}

void HistoryDatabaseItem::holdWrites(Attempt attempt) {
    parts_->queue->async([parts = parts_.get(), kept = std::move(attempt)]() mutable {
        parts->writes = Parts::Writes::held;
        parts->attempt = std::move(kept);
    });
}

void HistoryDatabaseItem::allowWrites() {
    parts_->queue->async([parts = parts_.get()] {
        parts->writes = Parts::Writes::allowed;
        parts->attempt = nullptr;
    });
}

void HistoryDatabaseItem::forgetWrites() { parts_->forgetWrites(); }

void HistoryDatabaseItem::queryDatabase(const Closure& closure) {
    if (parts_->queue->isCurrent())
        parts_->failReentrant();
    parts_->queue->sync([this, &closure] { parts_->query(closure); });
}

void HistoryDatabaseItem::queryDatabaseAsync(Closure closure) {
    parts_->queue->async(
        [parts = parts_.get(), work = std::move(closure)] { work(parts->database); });
}

void HistoryDatabaseItem::close() { parts_->database.close(); }

SQLDatabase& HistoryDatabaseItem::database() noexcept { return parts_->database; }
SerialQueue& HistoryDatabaseItem::queue() noexcept { return *parts_->queue; }
bool HistoryDatabaseItem::busy() const noexcept { return parts_->busy; }

const std::optional<std::filesystem::path>& HistoryDatabaseItem::path() const noexcept {
    return parts_->path;
}

void HistoryDatabaseItem::setPath(std::optional<std::filesystem::path> path) {
    parts_->path = std::move(path);
}

std::size_t HistoryDatabaseItem::queries() const {
    const std::scoped_lock lock(parts_->mutex);
    return parts_->waiting.size();
}

}  // namespace vantor::inline VANTOR_MODULE
