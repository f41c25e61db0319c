#include <array>
#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Database/HistoryDatabaseItem.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

constexpr int kBatches = 400;  // the same for both, because a file that grows costs more
constexpr int kHourRows = 24;  // and one of a day, each 144 seconds
constexpr const char* kTables[]{"hour_cpuhistory", "day_cpuhistory"};
constexpr const char* kCreate =
    "CREATE TABLE hour_cpuhistory (sample double, time double, empty integer, user double, "
    "system double, nice double);"
    "CREATE TABLE day_cpuhistory (sample double, time double, empty integer, user double, "
    "system double, nice double);";
constexpr std::size_t kValues = 6;

std::array<double, kValues> valuesOf(int sample) {
    return {static_cast<double>(sample), 1'425'900'000.0 + sample, 0, 12.5, 3.25, 0};
}

/// What this process has written to files so far.
double writtenBytes() {
    std::ifstream lines("/proc/self/io");
    double bytes = 0;
    for (std::string word; lines >> word;)
        if (word == "wchar:")
            lines >> bytes;
    return bytes;
}

/// Says how many bytes an hour's batches write: they are 144 seconds apart.
class BytesAnHour {
public:
    explicit BytesAnHour(benchmark::State& state) : state_(state) {}
    ~BytesAnHour() {
        const double batches = static_cast<double>(state_.iterations());
        state_.counters["bytesAnHour"] = (writtenBytes() - before_) / batches * 3600 / 144;
    }

private:
    benchmark::State& state_;
    double before_ = writtenBytes();
};

void throughTheItem(benchmark::State& state) {
    const test::TemporaryFolder folder;
    simulated::SimulatedMachine machine;
    HistoryDatabaseItem item(machine.ports(), folder / "cpu.db");
    item.database().executeStatements(kCreate);
    int sample = 0;
    const BytesAnHour bytes(state);
    for (auto _ : state) {
        for (int row = 0; row <= kHourRows; ++row) {
            HistoryRecord record("INSERT INTO %@ VALUES (?, ?, ?, ?, ?, ?)",
                                 kTables[row == kHourRows ? 1 : 0]);
            for (const double value : valuesOf(++sample))
                record.add(value);
            item.addItem(std::move(record));
        }
        item.commit();
    }
}
BENCHMARK(throughTheItem)->Unit(benchmark::kMicrosecond)->Iterations(kBatches);

void run(sqlite3* database, const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        std::abort();
}

sqlite3_stmt* prepared(sqlite3* database, const std::string& table) {
    sqlite3_stmt* statement = nullptr;
    const std::string sql = "INSERT INTO " + table + " VALUES (?, ?, ?, ?, ?, ?)";
    if (sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        std::abort();
    return statement;
}

/// The least that the same rows can cost.
void boundByHand(benchmark::State& state) {
    const test::TemporaryFolder folder;
    sqlite3* database = nullptr;
    if (sqlite3_open((folder / "cpu.db").c_str(), &database) != SQLITE_OK)
        std::abort();
    run(database, kCreate);
    sqlite3_stmt* const statements[]{prepared(database, kTables[0]),
                                     prepared(database, kTables[1])};
    int sample = 0;
    const BytesAnHour bytes(state);
    for (auto _ : state) {
        run(database, "begin exclusive transaction");
        for (int row = 0; row <= kHourRows; ++row) {
            sqlite3_stmt* const statement = statements[row == kHourRows ? 1 : 0];
            const auto values = valuesOf(++sample);
            for (std::size_t index = 0; index < kValues; ++index)
                sqlite3_bind_double(statement, static_cast<int>(index) + 1, values[index]);
            sqlite3_step(statement);
            sqlite3_reset(statement);
        }
        run(database, "commit transaction");
    }
    for (sqlite3_stmt* const statement : statements)
        sqlite3_finalize(statement);
    sqlite3_close(database);
}
BENCHMARK(boundByHand)->Unit(benchmark::kMicrosecond)->Iterations(kBatches);

}  // namespace
}  // namespace vantor
