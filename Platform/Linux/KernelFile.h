#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/Descriptor.h"

namespace vantor {

/// A text file of the kernel's that is read over and over: it stays open, and each reading is one
/// pread from its start, for which the kernel writes the text anew.
/// Shape:  one buffer, twice as large as the text at construction needs. Only a text that fills it
///         makes it grow; any other reading doesn't allocate.
/// Errors: nothing where the file can't be opened or read. The next reading opens it again.
/// Thread: one at a time.
class KernelFile {
public:
    explicit KernelFile(const std::filesystem::path& path);

    /// The text as it is now, good until the next reading. One of more than 16 MiB is cut.
    std::optional<std::string_view> read() noexcept;

private:
    bool open() noexcept;
    bool grow() noexcept;

    std::string path_;
    std::vector<char> buffer_;
    Descriptor descriptor_;
};

}  // namespace vantor
