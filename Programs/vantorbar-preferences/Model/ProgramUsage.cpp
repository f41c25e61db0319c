#include "Programs/vantorbar-preferences/Model/ProgramUsage.h"

#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

#include "Foundation/NumberText.h"
#include "Platform/Linux/ProcessTexts.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = 1 << 16;
constexpr std::string_view kProgram = "vantorbar", kCommand = "run";

std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text(kMostBytes, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

/// The figure behind `name` in lines such as "Pss:   120 kB", in bytes.
std::uint64_t bytesIn(std::string_view text, std::string_view name) noexcept {
    const std::size_t at = text.find(name);
    if (at == text.npos)
        return 0;
    const double kilobytes = leadingNumber(text.substr(at + name.size()));
    return kilobytes > 0 ? static_cast<std::uint64_t>(kilobytes) * 1024 : 0;
}

std::uint64_t memoryOf(const fs::path& folder) {
    if (const std::uint64_t shared = bytesIn(textOf(folder / "smaps_rollup"), "\nPss:"))
        return shared;
    return bytesIn(textOf(folder / "status"), "\nVmRSS:");
}

bool isItem(const fs::path& folder) {
    const std::string line = textOf(folder / "cmdline");
    ArgumentReader arguments(line);
    const auto program = arguments.next(), command = arguments.next();
    return program && command && baseName(*program) == kProgram && *command == kCommand;
}

bool belongsTo(std::uint32_t user, const fs::path& folder) noexcept {
    struct stat status {};
    return stat(folder.c_str(), &status) == 0 && status.st_uid == user;
}

}  // namespace

std::optional<ProgramUsage> usageOfProcess(const fs::path& proc, int process) {
    const fs::path folder = proc / std::to_string(process);
    const auto reading = processIn(textOf(folder / "stat"));
    if (!reading)
        return std::nullopt;
    const auto ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    const double upSeconds = leadingNumber(textOf(proc / "uptime"));
    return ProgramUsage{.process = process,
                        .processorSeconds = static_cast<double>(reading->ticks) / ticks,
                        .runningSeconds =
                            upSeconds - static_cast<double>(reading->startTicks) / ticks,
                        .memoryBytes = memoryOf(folder)};
}

std::vector<ProgramUsage> usageOfItems(const fs::path& proc, std::uint32_t user) {
    std::vector<ProgramUsage> items;
    std::error_code failed;  // ends the walk
    for (fs::directory_iterator entry(proc, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const auto process = wholeInteger(entry->path().filename().string());
        if (!process || !belongsTo(user, entry->path()) || !isItem(entry->path()))
            continue;
        if (const auto usage = usageOfProcess(proc, static_cast<int>(*process)))
            items.push_back(*usage);
    }
    return items;
}

}  // namespace vantor
