#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

namespace vantor {

/// A file that only grows. Its end closes it. One thread at a time.
class AppendingFile {
public:
    virtual ~AppendingFile() = default;
    /// All of `bytes`; after an error some of them may be there.
    virtual std::error_code append(std::string_view bytes) = 0;
    /// Where the file ended after the last append.
    virtual std::uint64_t offset() const noexcept = 0;
    /// Returns when what was appended outlives a power cut.
    virtual std::error_code synchronise() = 0;
};

/// Somebody looks after a file for as long as this lives. Ended on any thread.
class FileWatch {
public:
    virtual ~FileWatch() = default;
};

/// Port: what the standard library can't do with files. Dates are seconds since 1970; an attribute
/// is a mark with a name and no value. Any thread.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    /// Makes an empty file; where something has that name already, it says so and stays away.
    virtual std::error_code createFile(const std::filesystem::path& path) = 0;
    /// Opens a file that is there, at its end; null, with the error, where it can't.
    virtual std::unique_ptr<AppendingFile> openForAppending(const std::filesystem::path& path,
                                                            std::error_code& error) = 0;
    /// Attributes and dates go with the file.
    virtual std::error_code rename(const std::filesystem::path& from,
                                   const std::filesystem::path& to) = 0;
    /// Nothing where there is no such file, or where it bears no such date.
    virtual std::optional<double> creationDate(const std::filesystem::path& path) const = 0;
    virtual std::optional<double> modificationDate(const std::filesystem::path& path) const = 0;
    virtual bool hasAttribute(const std::filesystem::path& path, std::string_view name) const = 0;
    /// "Not supported" where files bear no attributes.
    virtual std::error_code setAttribute(const std::filesystem::path& path,
                                         std::string_view name) = 0;
    /// "No message available" where the file doesn't have it.
    virtual std::error_code removeAttribute(const std::filesystem::path& path,
                                            std::string_view name) = 0;
    /// Calls `gone` on the main queue once the file has been deleted or renamed. A call may still
    /// come after the watch has ended. Null where the system can't watch.
    virtual std::unique_ptr<FileWatch> watch(const std::filesystem::path& path,
                                             std::function<void()> gone) = 0;
};

}  // namespace vantor
