#include "Shared/External/SQLite/SQLPatience.h"

#include <mutex>

#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"

namespace vantor::inline VANTOR_MODULE {

struct SQLPatience::Running {
    std::mutex mutex;
    sqlite3* connection;  // null when it is over
};

SQLPatience::SQLPatience(MainQueue& mainQueue, SQLDatabase& database, double seconds)
    : mainQueue_(mainQueue), running_(std::make_shared<Running>()) {
    running_->connection = database.sqliteHandle();
    alarm_ = mainQueue.after(seconds, [running = running_] {
        const std::scoped_lock lock(running->mutex);
        if (running->connection != nullptr)
            sqlite3_interrupt(running->connection);
    });
}

SQLPatience::~SQLPatience() {
    mainQueue_.cancel(alarm_);
    const std::scoped_lock lock(running_->mutex);
    running_->connection = nullptr;
}

}  // namespace vantor::inline VANTOR_MODULE
