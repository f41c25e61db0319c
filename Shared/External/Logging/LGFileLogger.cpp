#include "Shared/External/Logging/LGFileLogger.h"

#include <exception>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "Platform/Clock.h"
#include "Platform/SystemLog.h"
#include "Platform/Workspace.h"
#include "Shared/External/Logging/LGLogFileFormatterDefault.h"
#include "Shared/External/Logging/LGLogFileManagerDefault.h"

namespace vantor::inline VANTOR_MODULE {

LGFileLogger::LGFileLogger(LGLog& log)
    : LGFileLogger(log, std::make_shared<LGLogFileManagerDefault>(log)) {}

LGFileLogger::LGFileLogger(LGLog& log, std::shared_ptr<LGLogFileManager> logFileManager)
    : LGAbstractLogger(log, "vantor.log.fileLogger"), logFileManager_(std::move(logFileManager)) {
    formatter_ = std::make_shared<LGLogFileFormatterDefault>(ports());
}

LGFileLogger::~LGFileLogger() {
    finishQueue();
    cancelTimer();
}

// --- Settings ----------------------------------------------------------------------------------

std::uint64_t LGFileLogger::maximumFileSize() {
    requireOutsideCaller();
    std::uint64_t bytes = 0;
    hopAndWait([&] { bytes = maximumFileSize_; });
    return bytes;
}

void LGFileLogger::setMaximumFileSize(std::uint64_t bytes) {
    requireOutsideCaller();
    hop([this, bytes] {
        maximumFileSize_ = bytes;
        maybeRollLogFileDueToSize();
    });
}

double LGFileLogger::rollingFrequency() {
    requireOutsideCaller();
    double seconds = 0;
    hopAndWait([&] { seconds = rollingFrequency_; });
    return seconds;
}

void LGFileLogger::setRollingFrequency(double seconds) {
    requireOutsideCaller();
    hop([this, seconds] {
        rollingFrequency_ = seconds;
        maybeRollLogFileDueToAge();
    });
}

// --- The current file --------------------------------------------------------------------------

/// By the very sum that the timer goes by, so that a timer never comes too early.
bool LGFileLogger::isDueByAge(const LGLogFileInfo& info) const {
    return rollingFrequency_ > 0 && ports().clock.now() >= info.creationDate() + rollingFrequency_;
}

/// Whether the file of an earlier run is written on.
bool LGFileLogger::canGoOn(const LGLogFileInfo& info) const {
    const bool isFull = maximumFileSize_ > 0 && info.fileSize() >= maximumFileSize_;
    return !info.isArchived() && !isFull && !isDueByAge(info);
}

LGLogFileInfo& LGFileLogger::currentLogFileInfo() {
    if (currentLogFileInfo_)
        return *currentLogFileInfo_;
    std::vector<LGLogFileInfo> infos = logFileManager_->sortedLogFileInfos();
    if (!infos.empty() && canGoOn(infos.front())) {
        currentLogFileInfo_ = std::move(infos.front());
        return *currentLogFileInfo_;
    }
    if (!infos.empty() && !infos.front().isArchived()) {
        archive(infos.front());
        logFileManager_->didArchiveLogFile(infos.front().filePath());
    }
    return currentLogFileInfo_.emplace(ports(), logFileManager_->createNewLogFile());
}

AppendingFile& LGFileLogger::currentLogFileHandle() {
    if (currentLogFileHandle_)
        return *currentLogFileHandle_;
    const std::filesystem::path path = currentLogFileInfo().filePath();
    std::error_code error;
    currentLogFileHandle_ = ports().fileSystem.openForAppending(path, error);
    if (!currentLogFileHandle_) {
        currentLogFileInfo_.reset();  // whatever is wrong may be gone when the next message comes
        throw std::system_error(error, path.string());
    }
    ++openedFiles_;
    scheduleTimerToRollLogFileDueToAge();
    watchCurrentFile();
    checkAgeAfterWake();
    return *currentLogFileHandle_;
}

/// A file that is moved or deleted behind us is let go; the next message makes a new one.
void LGFileLogger::watchCurrentFile() {
    const auto gone = [weak = weak_from_this(), opened = openedFiles_] {
        const auto logger = std::static_pointer_cast<LGFileLogger>(weak.lock());
        if (logger == nullptr)
            return;
        logger->loggerQueue()->async([self = logger.get(), opened] {
            if (self->openedFiles_ == opened)
                self->rollLogFileNow();
        });
    };
    currentLogFileVnode_ = ports().fileSystem.watch(currentLogFileInfo_->filePath(), gone);
}

/// The timer stands still while the machine sleeps; a file's age doesn't.
void LGFileLogger::checkAgeAfterWake() {
    const auto woke = [weak = weak_from_this()](const Notification&) {
        if (const auto logger = std::static_pointer_cast<LGFileLogger>(weak.lock()))
            logger->loggerQueue()->async(
                [self = logger.get()] { self->maybeRollLogFileDueToAge(); });
    };
    didWake_ = ports().workspace.notificationCenter().observe(std::string(kWorkspaceDidWake), woke);
}

/// Where files bear no marks the newest is the live one, and all others count as archived.
void LGFileLogger::archive(LGLogFileInfo& info) {
    if (info.setIsArchived(true) != LGLogFileInfo::Marking::unsupported ||
        std::exchange(toldUnsupported_, true))
        return;
    ports().systemLog.write(fmt::format("LGLogFileInfo: setxattr({}, {}): error = {}",
                                        info.filePath().string(), LGLogFileInfo::kArchivedAttribute,
                                        std::make_error_code(std::errc::not_supported).message()));
}

// --- Rolling -----------------------------------------------------------------------------------

void LGFileLogger::cancelTimer() noexcept {
    ports().mainQueue.cancel(std::exchange(rollingTimer_, MainQueue::CallID::none));
}

void LGFileLogger::scheduleTimerToRollLogFileDueToAge() {
    cancelTimer();
    if (!currentLogFileInfo_ || !(rollingFrequency_ > 0))
        return;
    const double due = currentLogFileInfo_->creationDate() + rollingFrequency_;
    rollingTimer_ = ports().mainQueue.after(due - ports().clock.now(), [weak = weak_from_this()] {
        if (const auto logger = std::static_pointer_cast<LGFileLogger>(weak.lock()))
            logger->loggerQueue()->async(
                [self = logger.get()] { self->maybeRollLogFileDueToAge(); });
    });
}

void LGFileLogger::maybeRollLogFileDueToAge() {
    if (currentLogFileInfo_ && isDueByAge(*currentLogFileInfo_))
        rollLogFileNow();
    else
        scheduleTimerToRollLogFileDueToAge();
}

void LGFileLogger::maybeRollLogFileDueToSize() {
    if (currentLogFileHandle_ && maximumFileSize_ > 0 &&
        currentLogFileHandle_->offset() >= maximumFileSize_)
        rollLogFileNow();
}

void LGFileLogger::rollLogFileNow() {
    if (!currentLogFileHandle_)
        return;
    // A disk that fails here has failed the writes before, which told of it.
    static_cast<void>(currentLogFileHandle_->synchronise());
    currentLogFileHandle_.reset();
    archive(*currentLogFileInfo_);
    logFileManager_->didRollAndArchiveLogFile(currentLogFileInfo_->filePath());
    currentLogFileInfo_.reset();
    currentLogFileVnode_.reset();
    cancelTimer();
}

void LGFileLogger::rollLogFileWithCompletionBlock(std::function<void()> completion) {
    auto roll = [this, completion = std::move(completion)] {
        rollLogFileNow();
        if (completion)
            ports().mainQueue.async(completion);
    };
    if (isOnInternalLoggerQueue())
        roll();
    else
        hop(std::move(roll));
}

// --- Messages ----------------------------------------------------------------------------------

void LGFileLogger::logMessage(const LGLogMessage& message) {
    try {
        writeMessage(message);
    } catch (const std::exception& exception) {
        reportFailure(exception.what());
    } catch (...) {
        reportFailure("unknown exception");
    }
}

void LGFileLogger::writeMessage(const LGLogMessage& message) {
    std::optional<std::string> line =
        formatter_ ? formatter_->formatLogMessage(message) : message.logMsg;
    if (!line)
        return;
    if (!line->ends_with('\n'))
        *line += '\n';
    if (const std::error_code error = currentLogFileHandle().append(*line))
        throw std::system_error(error, currentLogFileInfo_->filePath().string());
    maybeRollLogFileDueToSize();
}

void LGFileLogger::reportFailure(const char* reason) {
    if (failures_ >= kMostReports)
        return;
    ++failures_;
    ports().systemLog.write(fmt::format("LGFileLogger.logMessage: {}", reason));
    if (failures_ == kMostReports)
        ports().systemLog.write("LGFileLogger.logMessage: Too many exceptions -- will not log any "
                                "more of them.");
}

}  // namespace vantor::inline VANTOR_MODULE
