#include "Shared/External/Logging/LGLogFileManagerDefault.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "Platform/Clock.h"
#include "Platform/Directories.h"
#include "Platform/FileSystem.h"
#include "Platform/SystemLog.h"
#include "Platform/ThisProcess.h"
#include "Shared/External/Logging/LGLog.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

namespace fs = std::filesystem;

bool isPlainFile(const fs::directory_entry& entry) {
    std::error_code unreadable;
    return entry.is_regular_file(unreadable);
}

/// What `member` answers for each of `infos`.
template <class Member>
auto mapped(const std::vector<LGLogFileInfo>& infos, Member member) {
    std::vector<std::remove_cvref_t<decltype((infos.front().*member)())>> values;
    for (const LGLogFileInfo& info : infos)
        values.push_back((info.*member)());
    return values;
}

}  // namespace

LGLogFileManagerDefault::LGLogFileManagerDefault(LGLog& log)
    : LGLogFileManagerDefault(log, defaultLogsDirectory(log.ports())) {}

LGLogFileManagerDefault::LGLogFileManagerDefault(LGLog& log, fs::path logsDirectory)
    : log_(log), logsDirectory_(std::move(logsDirectory)) {}

fs::path LGLogFileManagerDefault::defaultLogsDirectory(const Ports& ports) {
    std::error_code none;  // leaves the path empty: relative to where the program runs
    const auto logs = ports.directories.logs();
    const fs::path parent = logs ? *logs : fs::temp_directory_path(none) / "Logs";
    return parent / ports.thisProcess.name();
}

std::string LGLogFileManagerDefault::applicationName() const {
    return log_.ports().thisProcess.name();
}

bool LGLogFileManagerDefault::isLogFile(std::string_view fileName) const {
    return logFileName(fileName, applicationName()).has_value();
}

LGLogFileName LGLogFileManagerDefault::newName() const {
    const double now = log_.ports().clock.now();
    return {.time = static_cast<std::int64_t>(std::floor(now))};
}

std::string LGLogFileManagerDefault::newLogFileName() const {
    return textOf(newName(), applicationName());
}

fs::path LGLogFileManagerDefault::logsDirectory() {
    std::error_code error;
    fs::create_directories(logsDirectory_, error);
    if (error && !directoryFailed_.exchange(true))
        log_.ports().systemLog.write(
            fmt::format("LGFileLogManagerDefault: Error creating logsDirectory: {}: {}",
                        logsDirectory_.string(), error.message()));
    if (!error)
        directoryFailed_ = false;
    return logsDirectory_;
}

std::vector<LGLogFileInfo> LGLogFileManagerDefault::unsortedLogFileInfos() {
    std::vector<LGLogFileInfo> infos;
    std::error_code unreadable;  // no file is found, then
    fs::directory_iterator entry(logsDirectory(), unreadable);
    for (; !unreadable && entry != fs::directory_iterator(); entry.increment(unreadable))
        if (isLogFile(entry->path().filename().string()) && isPlainFile(*entry))
            infos.emplace_back(log_.ports(), entry->path());
    return infos;
}

std::vector<fs::path> LGLogFileManagerDefault::unsortedLogFilePaths() {
    return mapped(unsortedLogFileInfos(), &LGLogFileInfo::filePath);
}

std::vector<std::string> LGLogFileManagerDefault::unsortedLogFileNames() {
    return mapped(unsortedLogFileInfos(), &LGLogFileInfo::fileName);
}

std::vector<LGLogFileInfo> LGLogFileManagerDefault::sortedLogFileInfos() {
    std::vector<LGLogFileInfo> infos = unsortedLogFileInfos();
    const std::string application = applicationName();
    std::ranges::sort(infos, [&](const LGLogFileInfo& left, const LGLogFileInfo& right) {
        const auto order = left.reverseCompareByCreationDate(right);
        return order != 0 ? order < 0
                          : logFileName(left.fileName(), application) >
                                logFileName(right.fileName(), application);
    });
    return infos;
}

std::vector<fs::path> LGLogFileManagerDefault::sortedLogFilePaths() {
    return mapped(sortedLogFileInfos(), &LGLogFileInfo::filePath);
}

std::vector<std::string> LGLogFileManagerDefault::sortedLogFileNames() {
    return mapped(sortedLogFileInfos(), &LGLogFileInfo::fileName);
}

fs::path LGLogFileManagerDefault::createNewLogFile() {
    const fs::path directory = logsDirectory();
    const std::string application = applicationName();
    LGLogFileName name = newName();
    fs::path path = directory / textOf(name, application);
    FileSystem& files = log_.ports().fileSystem;
    while (files.createFile(path) == std::errc::file_exists) {
        ++name.attempt;
        path = directory / textOf(name, application);
    }
    deleteOldLogFiles();
    return path;
}

void LGLogFileManagerDefault::deleteOldLogFiles() {
    const std::uint64_t maximum = maximumNumberOfLogFiles_;
    if (maximum == 0)
        return;
    std::vector<LGLogFileInfo> infos = sortedLogFileInfos();
    if (!infos.empty() && !infos.front().isArchived())
        infos.erase(infos.begin());  // in use
    std::error_code kept;            // what can't be deleted now is tried again with the next file
    for (std::size_t index = maximum; index < infos.size(); ++index)
        fs::remove(infos[index].filePath(), kept);
}

void LGLogFileManagerDefault::setMaximumNumberOfLogFiles(std::uint64_t number) {
    if (maximumNumberOfLogFiles_.exchange(number) != number)
        log_.whenRunning([weak = weak_from_this()] {
            if (const auto self = weak.lock())
                self->deleteOldLogFiles();
        });
}

}  // namespace vantor::inline VANTOR_MODULE
