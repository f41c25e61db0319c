#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Foundation/NotificationCenter.h"
#include "Platform/FileSystem.h"
#include "Platform/MainQueue.h"
#include "Shared/External/Logging/LGAbstractLogger.h"
#include "Shared/External/Logging/LGLogFileManager.h"

namespace vantor::inline VANTOR_MODULE {

/// Writes a line for each message into the newest file of its manager, and begins a new one when
/// that is too large or too old. Made by std::make_shared.
/// Units:  sizes in bytes, frequencies in seconds; 0 (or less) is no limit.
/// Errors: what goes wrong in a message is told in the system log, the first kMostReports times;
///         the message is lost, and the next one looks for a file anew.
/// Thread: as LGAbstractLogger; what has no hop in its words is called on the logger's queue.
class LGFileLogger final : public LGAbstractLogger {
public:
    static constexpr std::uint64_t kDefaultMaximumFileSize = 1'048'576;
    static constexpr double kDefaultRollingFrequency = 86'400;
    static constexpr int kMostReports = 10;

    /// With a manager of the default directory. The log outlives the logger.
    explicit LGFileLogger(LGLog& log);
    LGFileLogger(LGLog& log, std::shared_ptr<LGLogFileManager> logFileManager);
    ~LGFileLogger() override;

    /// With the hop, as are the four after it.
    std::uint64_t maximumFileSize();
    void setMaximumFileSize(std::uint64_t bytes);
    double rollingFrequency();
    void setRollingFrequency(double seconds);
    void rollLogFile() { rollLogFileWithCompletionBlock({}); }
    /// Directly, where the caller is on the logger's queue. `completion` runs on the main queue.
    void rollLogFileWithCompletionBlock(std::function<void()> completion);
    LGLogFileManager& logFileManager() const noexcept { return *logFileManager_; }

    void logMessage(const LGLogMessage& message) override;
    void willRemoveLogger() override { rollLogFileNow(); }

    /// The file that is written to. Chooses one, or makes one, where there is none yet.
    LGLogFileInfo& currentLogFileInfo();
    /// Throws std::system_error where the current file can't be opened.
    AppendingFile& currentLogFileHandle();
    void rollLogFileNow();
    void maybeRollLogFileDueToAge();
    void maybeRollLogFileDueToSize();
    void scheduleTimerToRollLogFileDueToAge();

private:
    bool canGoOn(const LGLogFileInfo& info) const;
    bool isDueByAge(const LGLogFileInfo& info) const;
    void archive(LGLogFileInfo& info);
    void writeMessage(const LGLogMessage& message);
    void reportFailure(const char* reason);
    void watchCurrentFile();
    void checkAgeAfterWake();
    void cancelTimer() noexcept;

    std::uint64_t maximumFileSize_ = kDefaultMaximumFileSize;
    double rollingFrequency_ = kDefaultRollingFrequency;
    const std::shared_ptr<LGLogFileManager> logFileManager_;
    std::optional<LGLogFileInfo> currentLogFileInfo_;
    std::unique_ptr<AppendingFile> currentLogFileHandle_;
    std::unique_ptr<FileWatch> currentLogFileVnode_;
    std::uint64_t openedFiles_ = 0;  // tells what comes late from the watch of an earlier file
    MainQueue::CallID rollingTimer_ = MainQueue::CallID::none;
    Observation didWake_;
    int failures_ = 0;
    bool toldUnsupported_ = false;
};

}  // namespace vantor::inline VANTOR_MODULE
