#include "Shared/External/SQLite/SQLBusyWait.h"

#include <chrono>

#include <sqlite3.h>

namespace vantor::inline VANTOR_MODULE {
namespace {

class RealBusyWait final : public SQLBusyWait {
public:
    double now() const noexcept override {
        const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration<double>(sinceStart).count();
    }
    // The answer is how long SQLite meant to sleep; how long it was is seen by the clock.
    void sleep(int milliseconds) const noexcept override { sqlite3_sleep(milliseconds); }
};

}  // namespace

const SQLBusyWait& SQLBusyWait::real() noexcept {
    static const RealBusyWait wait;
    return wait;
}

}  // namespace vantor::inline VANTOR_MODULE
