#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace vantor::test {

inline std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("no " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Writes a file and the folders above it. A file that is there keeps its identity, as those of
/// the kernel do.
inline void writeText(const std::filesystem::path& path, std::string_view text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error("can't write " + path.string());
}

/// A text of /proc/stat for CPUs numbered from 0, as long as that of a machine that has run for
/// weeks. `more` is added to each CPU's user and idle time.
inline std::string statText(std::uint32_t cpus, std::uint64_t more = 0) {
    std::string lines;
    for (std::uint64_t cpu = 0; cpu < cpus; ++cpu)
        fmt::format_to(std::back_inserter(lines), "cpu{} {} {} {} {} {} 0 {} {} {} 0\n", cpu,
                       9'604'311 + cpu + more, 61'205 + cpu, 3'050'020 + cpu,
                       381'400'507 + cpu + more, 240'161 + cpu, 88'412 + cpu, cpu, cpu);
    return "cpu  1 2 3 4 5 6 7 8 9 10\n" + lines +
           "intr 1463 0 9 0 12\nctxt 300347\nbtime 1700000000\nprocesses 5006\n";
}

}  // namespace vantor::test
