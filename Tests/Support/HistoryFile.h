#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/SystemLog.h"
#include "Shared/External/SQLite/SQLDatabase.h"

namespace vantor::test {

/// A history file, looked into and changed by a connection of the test's own.
class HistoryFile {
public:
    explicit HistoryFile(const std::filesystem::path& path) : database_(environment_, path) {
        if (!database_.open())
            throw std::runtime_error("can't open " + path.string());
    }

    void run(const std::string& sql) {
        if (!database_.executeStatements(sql))
            throw std::runtime_error(database_.lastErrorMessage());
    }
    std::vector<double> column(std::string_view sql) {
        std::vector<double> figures;
        const auto rows = database_.executeQuery(sql);
        while (rows && rows->next())
            figures.push_back(rows->doubleForColumnIndex(0));
        return figures;
    }
    /// The first row's, or -1 without any.
    double number(std::string_view sql) {
        const std::vector<double> figures = column(sql);
        return figures.empty() ? -1 : figures.front();
    }
    bool hasTable(std::string_view name) { return database_.tableExists(name); }

private:
    class DeafLog final : public SystemLog {
        void write(std::string_view) noexcept override {}
    };
    DeafLog log_;
    SQLEnvironment environment_{log_};
    SQLDatabase database_;
};

}  // namespace vantor::test
