#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Shared/External/Logging/LGLogFileInfo.h"

namespace vantor::inline VANTOR_MODULE {

/// Names, finds and deletes the files of one file logger. What has a body here is its choice.
/// Thread: any; the file logger calls on its own queue.
class LGLogFileManager {
public:
    virtual ~LGLogFileManager() = default;
    /// Made with its parents where it is missing.
    virtual std::filesystem::path logsDirectory() = 0;
    virtual std::vector<std::filesystem::path> unsortedLogFilePaths() = 0;
    virtual std::vector<std::string> unsortedLogFileNames() = 0;
    virtual std::vector<LGLogFileInfo> unsortedLogFileInfos() = 0;
    /// Newest first, by creation date.
    virtual std::vector<std::filesystem::path> sortedLogFilePaths() = 0;
    virtual std::vector<std::string> sortedLogFileNames() = 0;
    virtual std::vector<LGLogFileInfo> sortedLogFileInfos() = 0;
    /// Makes an empty file, and room for it. The path is a new one even where it can't be made.
    virtual std::filesystem::path createNewLogFile() = 0;
    /// How many archived files stay; 0 for all. The one in use comes on top.
    virtual std::uint64_t maximumNumberOfLogFiles() const = 0;
    virtual void setMaximumNumberOfLogFiles(std::uint64_t number) = 0;

    virtual void didArchiveLogFile(const std::filesystem::path&) {}
    virtual void didRollAndArchiveLogFile(const std::filesystem::path&) {}
};

}  // namespace vantor::inline VANTOR_MODULE
