#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "Platform/Ports.h"
#include "Shared/Database/HistoryRecord.h"
#include "Shared/External/SQLite/SQLDatabase.h"

namespace vantor {
class SerialQueue;
}

namespace vantor::inline VANTOR_MODULE {

/// One open history file: its connection, the serial queue that every access to it runs on, and
/// the writes that wait for the next commit.
/// Errors: none are reported. A file that can't be opened makes an item whose reads and writes
///         quietly do nothing; a write that fails leaves the others of its batch alone.
/// Thread: any, but `queryDatabase` never on the item's own queue, and `close` only while no task
///         of the queue is running.
class HistoryDatabaseItem {
public:
    using Closure = std::function<void(SQLDatabase&)>;

    HistoryDatabaseItem(const Ports& ports, const std::filesystem::path& path);
    ~HistoryDatabaseItem();
    HistoryDatabaseItem(const HistoryDatabaseItem&) = delete;
    HistoryDatabaseItem& operator=(const HistoryDatabaseItem&) = delete;

    /// Keeps the write for the next commit. Doesn't wait, and touches no heap for a record of a
    /// few numbers once the list has grown to what a batch needs.
    void addItem(HistoryRecord record);
    /// Writes all that waits, in one exclusive transaction. Doesn't wait.
    void commit();
    /// Runs `closure` on the queue and returns when it has run.
    void queryDatabase(const Closure& closure);
    /// The same, but returns at once.
    void queryDatabaseAsync(Closure closure);
    /// Closes the connection, directly.
    void close();

    SQLDatabase& database() noexcept;
    SerialQueue& queue() noexcept;
    bool busy() const noexcept;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace vantor::inline VANTOR_MODULE
