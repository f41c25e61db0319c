#pragma once

#include <cstdio>
#include <vector>

#include "Shared/External/SQLite/SQLEnvironment.h"
#include "Tests/Support/QueueWorld.h"

namespace vantor::test {

/// What a connection needs, with a log that is kept.
struct SQLWorld {
    KeptLog log;
    SQLEnvironment environment{log};
};

/// Shows on standard error, where the end of a process is looked at.
class ShownLog final : public SystemLog {
public:
    void write(std::string_view text) noexcept override {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    }
};

/// Time passes by sleeping alone, and sleeping takes none.
class CountedBusyWait final : public SQLBusyWait {
public:
    double now() const noexcept override { return elapsedMilliseconds_ / 1000.0; }
    void sleep(int milliseconds) const noexcept override {
        sleeps.push_back(milliseconds);
        elapsedMilliseconds_ += milliseconds;
    }

    mutable std::vector<int> sleeps;

private:
    mutable int elapsedMilliseconds_ = 0;
};

}  // namespace vantor::test
