#include "Platform/Linux/DRMClientText.h"

#include <algorithm>
#include <optional>

#include "Platform/Linux/DeviceFiles.h"

namespace vantor {
namespace {

/// "512 KiB" in bytes; a number alone is bytes, too.
std::uint64_t bytesOf(std::string_view value) noexcept {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 44;  // more is a mistake
    const auto blank = std::min(value.find(' '), value.size());
    const std::string_view unit = trimmedText(value.substr(blank));
    const int shift = unit == "KiB" ? 10 : unit == "MiB" ? 20 : unit == "GiB" ? 30 : 0;
    const auto count = wholeCount(value.substr(0, blank));
    return count && *count < kMost ? *count << shift : 0;
}

/// The number at the start of "12345 ns".
std::uint64_t numberOf(std::string_view value) noexcept {
    return wholeCount(value.substr(0, value.find(' '))).value_or(0);
}

DRMClientFigures::Engine* engineNamed(std::string_view name, DRMClientFigures& figures) noexcept {
    const auto* const found = std::ranges::find(DRMClientFigures::kEngines, name);
    return found == DRMClientFigures::kEngines.end()
               ? nullptr
               : &figures.engines[static_cast<std::size_t>(found -
                                                           DRMClientFigures::kEngines.begin())];
}

/// What stands behind `prefix` in `key`.
std::optional<std::string_view> behind(std::string_view key, std::string_view prefix) noexcept {
    return key.starts_with(prefix) ? std::optional(key.substr(prefix.size())) : std::nullopt;
}

using EngineFigure = std::uint64_t DRMClientFigures::Engine::*;

/// The longer prefixes first: each is the beginning of another.
struct EngineKey {
    std::string_view prefix;
    EngineFigure figure;
};
constexpr EngineKey kEngineKeys[] = {{"drm-engine-capacity-", &DRMClientFigures::Engine::capacity},
                                     {"drm-engine-", &DRMClientFigures::Engine::nanoseconds},
                                     {"drm-total-cycles-", &DRMClientFigures::Engine::totalCycles},
                                     {"drm-cycles-", &DRMClientFigures::Engine::cycles}};

bool readEngine(std::string_view key, std::string_view value, DRMClientFigures& into) noexcept {
    for (const auto& [prefix, figure] : kEngineKeys)
        if (const auto name = behind(key, prefix)) {
            if (auto* const engine = engineNamed(*name, into))
                engine->*figure = numberOf(value);
            return true;
        }
    return false;
}

void readEntry(std::string_view key, std::string_view value, DRMClientFigures& into) noexcept {
    if (key == "drm-pdev")
        into.address = value;
    else if (key == "drm-client-id")
        into.client = numberOf(value);
    else if (readEngine(key, value, into))
        return;
    else if (const auto region = behind(key, "drm-resident-")) {
        const bool isLocal = region->starts_with("local") || region->starts_with("vram");
        (isLocal ? into.localBytes : into.systemBytes) += bytesOf(value);
    }
}

double share(std::uint64_t part, double whole) noexcept {
    return whole > 0 ? 100 * static_cast<double>(part) / whole : 0;
}

}  // namespace

DRMClientFigures drmClientFiguresOf(std::string_view text) noexcept {
    DRMClientFigures figures;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (const auto colon = line.find(':'); colon != line.npos)
            readEntry(line.substr(0, colon), trimmedText(line.substr(colon + 1)), figures);
    }
    return figures;
}

void addEngineLoads(const DRMClientFigures& before, const DRMClientFigures& after, double seconds,
                    std::array<double, DRMClientFigures::kEngines.size()>& into) noexcept {
    constexpr double kNanoseconds = 1e9;
    for (std::size_t number = 0; number < into.size(); ++number) {
        const auto& old = before.engines[number];
        const auto& now = after.engines[number];
        const auto capacity = static_cast<double>(std::max<std::uint64_t>(now.capacity, 1));
        if (now.nanoseconds > old.nanoseconds)
            into[number] +=
                share(now.nanoseconds - old.nanoseconds, seconds * kNanoseconds * capacity);
        if (now.cycles > old.cycles && now.totalCycles > old.totalCycles)
            into[number] +=
                share(now.cycles - old.cycles,
                      static_cast<double>(now.totalCycles - old.totalCycles) * capacity);
    }
}

}  // namespace vantor
