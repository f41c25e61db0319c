#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Ports.h"
#include "Shared/Database/HistoryRecord.h"
#include "Shared/External/SQLite/SQLBusyWait.h"
#include "Shared/External/SQLite/SQLDatabase.h"

namespace vantor {
class SerialQueue;
}

namespace vantor::inline VANTOR_MODULE {

/// One open history file: its connection, the serial queue that every access to it runs on, and
/// the writes that wait for the next commit.
/// Shape:  at most HistoryRecordList::kMostRecords writes wait. Past that the oldest are dropped,
///         and the system log says so once until a commit empties the list.
/// Errors: none are reported. A file that can't be opened makes an item whose reads and writes
///         quietly do nothing; a write that fails leaves the others of its batch alone. A batch
///         that can't have its transaction is written a statement at a time. Whatever stopped a
///         batch, the next one goes on as if nothing had been. A file that couldn't be read when
///         its history was to be loaded isn't written before it could be (`holdWrites`).
/// Thread: any, but `queryDatabase` never on the item's own queue, which ends the process, and
///         `close` only while no task of the queue is running. No closure may hold the item's last
///         owner.
class HistoryDatabaseItem {
public:
    using Closure = std::function<void(SQLDatabase&)>;
    using Attempt = std::function<bool(SQLDatabase&)>;

    static constexpr double kPatienceSeconds = 0.2;
    /// A hundred times what all scales of a file come to.
    static constexpr std::uintmax_t kFarTooLargeBytes = 32 << 20;

    /// Opens the file, and makes it where there is none.
    HistoryDatabaseItem(const Ports& ports, const std::filesystem::path& path,
                        const SQLBusyWait& busyWait = SQLBusyWait::real());
    /// Runs what the queue has first.
    ~HistoryDatabaseItem();
    HistoryDatabaseItem(const HistoryDatabaseItem&) = delete;
    HistoryDatabaseItem& operator=(const HistoryDatabaseItem&) = delete;

    /// Keeps the write for the next commit. Doesn't wait, and touches no heap for a record of a
    /// few numbers once the list has grown to what a batch needs.
    void addItem(HistoryRecord record);
    /// Writes all that waits when its turn on the queue comes, in one exclusive transaction; with
    /// nothing waiting the transaction is an empty one. Doesn't wait.
    void commit();
    /// From here on a commit writes nothing: it makes the attempt, on the queue, and its batch has
    /// failed. When one attempt has succeeded no more are made, and what comes after it waits for
    /// `allowWrites`.
    void holdWrites(Attempt attempt);
    /// From here on a commit writes what waits.
    void allowWrites();
    /// Drops what waits for a commit.
    void forgetWrites();
    /// Runs `closure` on the queue and returns when it has run. A cursor that the closure leaves
    /// open stays open, and the log says so. Where the file is far larger than ours ever are,
    /// nobody waits for it longer than kPatienceSeconds: what it does is interrupted.
    void queryDatabase(const Closure& closure);
    /// The same, but returns at once and doesn't look for cursors.
    void queryDatabaseAsync(Closure closure);
    /// Closes the connection, directly.
    void close();

    SQLDatabase& database() noexcept;
    SerialQueue& queue() noexcept;
    /// On while a commit runs its statements. Nothing goes by it.
    bool busy() const noexcept;
    /// A note for callers, with nothing in it at first.
    const std::optional<std::filesystem::path>& path() const noexcept;
    void setPath(std::optional<std::filesystem::path> path);
    /// How many writes wait.
    std::size_t queries() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace vantor::inline VANTOR_MODULE
