#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string_view>

#include "Shared/External/Logging/LGLogFileManager.h"
#include "Shared/External/Logging/LGLogFileName.h"

namespace vantor::inline VANTOR_MODULE {

class LGLog;

/// Files named after the application and the minute in which they were made, in one directory.
/// Made by std::make_shared. Only plain files count as log files.
/// Errors: a directory that can't be made is told in the system log, once until it can.
class LGLogFileManagerDefault final : public LGLogFileManager,
                                      public std::enable_shared_from_this<LGLogFileManagerDefault> {
public:
    static constexpr std::uint64_t kDefaultMaximumNumberOfLogFiles = 5;

    /// In the default directory. The log outlives the manager.
    explicit LGLogFileManagerDefault(LGLog& log);
    LGLogFileManagerDefault(LGLog& log, std::filesystem::path logsDirectory);

    /// Named after the process, beside the suite's log directories; below the temporary directory
    /// for a user who has no place for logs.
    static std::filesystem::path defaultLogsDirectory(const Ports& ports);

    bool isLogFile(std::string_view fileName) const;
    std::string newLogFileName() const;
    std::string applicationName() const;
    void deleteOldLogFiles();

    std::filesystem::path logsDirectory() override;
    std::vector<std::filesystem::path> unsortedLogFilePaths() override;
    std::vector<std::string> unsortedLogFileNames() override;
    std::vector<LGLogFileInfo> unsortedLogFileInfos() override;
    std::vector<std::filesystem::path> sortedLogFilePaths() override;
    std::vector<std::string> sortedLogFileNames() override;
    /// Of the same date the one whose name tells a later time, or a later attempt, is the newer.
    std::vector<LGLogFileInfo> sortedLogFileInfos() override;
    std::filesystem::path createNewLogFile() override;
    std::uint64_t maximumNumberOfLogFiles() const override { return maximumNumberOfLogFiles_; }
    void setMaximumNumberOfLogFiles(std::uint64_t number) override;

private:
    LGLogFileName newName() const;

    LGLog& log_;
    const std::filesystem::path logsDirectory_;
    std::atomic<std::uint64_t> maximumNumberOfLogFiles_ = kDefaultMaximumNumberOfLogFiles;
    std::atomic<bool> directoryFailed_ = false;
};

}  // namespace vantor::inline VANTOR_MODULE
