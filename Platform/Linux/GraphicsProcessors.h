#pragma once

#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/Linux/DeviceFiles.h"
#include "Platform/Linux/GPUFigures.h"
#include "Platform/Linux/GPUPower.h"
#include "Platform/Linux/GraphicsDevices.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/NVMLReadings.h"

namespace vantor {

/// Where things are that the registry reads.
struct RegistrySources {
    KernelFiles kernel;
    std::filesystem::path root = "/";  // of the list of device names
    std::string nvml = NVMLReadings::kLibrary;
};

/// One graphics processor, however often it came and went.
struct GraphicsProcessor {
    GraphicsProcessor(DeviceFiles& files, GraphicsDevice found);

    GraphicsDevice device;
    GPUPower power;
    std::unique_ptr<GPUReader> reader;  // null for what NVML reads, and for what nobody can
    std::optional<std::string> model;
    double readAt = std::numeric_limits<double>::lowest();
    bool isThere = false;
};

/// What was read of one: its power, and nothing else where it can't be read, or mustn't be.
struct GPUReading {
    GPUPower::State power;
    std::optional<GPUFigures> figures;
};

/// Reads the machine's graphics processors, each as its driver wants to be asked, and those that
/// sleep not at all.
/// Thread: main queue. Nothing blocks: what may is asked on a thread of its own.
class GraphicsProcessors {
public:
    static constexpr double kFreshSeconds = 0.25;

    /// All outlive it.
    GraphicsProcessors(const Clock& clock, DeviceFiles& files, const RegistrySources& sources);
    /// Gives a reading under way some time to end.
    ~GraphicsProcessors();

    /// None of them is there, until it is entered again.
    void leave() noexcept;
    /// Another card in the same slot is another processor.
    GraphicsProcessor& enter(const GraphicsDevice& device);
    /// After the last `enter`.
    void settle();

    /// Nothing while the reading before is no older than kFreshSeconds.
    std::optional<GPUReading> read(GraphicsProcessor& processor);
    /// The driver knows best, but one that sleeps isn't asked.
    std::string modelOf(GraphicsProcessor& processor);
    bool isAsleep(GraphicsProcessor& processor) const noexcept;

private:
    std::unique_ptr<GPUReader> readerFor(const GraphicsDevice& device);
    std::optional<GPUFigures> figuresOf(GraphicsProcessor& processor, double now);
    std::optional<GPUFigures> nvmlFigures(GraphicsProcessor& processor, double now);

    const Clock& clock_;
    DeviceFiles& files_;
    const RegistrySources& sources_;
    std::map<std::string, std::unique_ptr<GraphicsProcessor>> processors_;  // all that ever were
    std::vector<std::string> nvidia_;  // addresses of what NVML can read
    std::unique_ptr<NVMLReadings> nvml_;
};

}  // namespace vantor
