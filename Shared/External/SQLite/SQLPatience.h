#pragma once

#include <memory>

#include "Platform/MainQueue.h"

namespace vantor::inline VANTOR_MODULE {

class SQLDatabase;

/// Interrupts what runs on a connection when it has taken that many seconds.
/// Errors: what is interrupted fails for a reason that may pass.
/// Thread: made and ended on the queue of the connection, which stays open; the main queue runs
///         meanwhile.
class SQLPatience {
public:
    SQLPatience(MainQueue& mainQueue, SQLDatabase& database, double seconds);
    ~SQLPatience();
    SQLPatience(const SQLPatience&) = delete;
    SQLPatience& operator=(const SQLPatience&) = delete;

private:
    struct Running;

    MainQueue& mainQueue_;
    std::shared_ptr<Running> running_;
    MainQueue::CallID alarm_;
};

}  // namespace vantor::inline VANTOR_MODULE
