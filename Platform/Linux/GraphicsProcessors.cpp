#include "Platform/Linux/GraphicsProcessors.h"

#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "Platform/Linux/AMDGPUReader.h"
#include "Platform/Linux/DRMClientsReader.h"

namespace vantor {
namespace {

using State = GPUPower::State;

constexpr std::string_view kNVIDIADriver = "nvidia";

bool isNVIDIA(const GraphicsProcessor& processor) noexcept {
    return processor.isThere && processor.device.driver == kNVIDIADriver;
}

}  // namespace

GraphicsProcessor::GraphicsProcessor(DeviceFiles& files, GraphicsDevice found)
    : device(std::move(found)), power(files, device.folder) {}

GraphicsProcessors::GraphicsProcessors(const Clock& clock, DeviceFiles& files,
                                       const RegistrySources& sources)
    : clock_(clock), files_(files), sources_(sources) {}

GraphicsProcessors::~GraphicsProcessors() {
    if (nvml_)
        nvml_->end();
}

void GraphicsProcessors::leave() noexcept {
    for (const auto& [key, processor] : processors_)
        processor->isThere = false;
}

GraphicsProcessor& GraphicsProcessors::enter(const GraphicsDevice& device) {
    // The same card behind another driver needs another reader.
    const std::string key = fmt::format("{} {:04x}:{:04x} {}", device.address, device.id.vendor,
                                        device.id.device, device.driver);
    auto& processor = processors_[key];
    if (!processor)
        processor = std::make_unique<GraphicsProcessor>(files_, device);
    processor->device = device;
    processor->isThere = true;
    if (!processor->reader)
        processor->reader = readerFor(device);
    return *processor;
}

std::unique_ptr<GPUReader> GraphicsProcessors::readerFor(const GraphicsDevice& device) {
    if (device.driver == "amdgpu")
        return std::make_unique<AMDGPUReader>(files_, device.folder,
                                              device.isIntegrated ? AMDGPUReader::Memory::shared
                                                                  : AMDGPUReader::Memory::own);
    if (device.driver == "i915" || device.driver == "xe")
        return std::make_unique<DRMClientsReader>(
            files_, sources_.kernel.proc.string(), device.address,
            device.isIntegrated ? DRMClientsReader::Memory::shared : DRMClientsReader::Memory::own);
    return nullptr;
}

void GraphicsProcessors::settle() {
    std::vector<std::string> addresses;
    for (const auto& [key, processor] : processors_)
        if (isNVIDIA(*processor))
            addresses.push_back(processor->device.address);
    if (addresses == nvidia_)
        return;
    nvidia_ = addresses;
    nvml_.reset();
    if (!addresses.empty())
        nvml_ = std::make_unique<NVMLReadings>(std::move(addresses), sources_.nvml);
}

std::string GraphicsProcessors::modelOf(GraphicsProcessor& processor) {
    if (!processor.model && !isAsleep(processor))
        processor.model = modelByDriver(files_, sources_.kernel, processor.device);
    if (!processor.model)
        processor.model = graphicsModelByList(processor.device.id, sources_.root);
    return *processor.model;
}

bool GraphicsProcessors::isAsleep(GraphicsProcessor& processor) const noexcept {
    return processor.power.look(clock_.monotonic()) == State::asleep;
}

std::optional<GPUReading> GraphicsProcessors::read(GraphicsProcessor& processor) {
    const double now = clock_.monotonic();
    if (now - processor.readAt < kFreshSeconds)
        return std::nullopt;
    processor.readAt = now;
    const State state = processor.power.look(now);
    if (state == State::resting)
        return GPUReading{state, std::nullopt};
    if (isNVIDIA(processor))
        return GPUReading{state, nvmlFigures(processor, now)};
    return GPUReading{state, state == State::awake ? figuresOf(processor, now) : std::nullopt};
}

std::optional<GPUFigures> GraphicsProcessors::figuresOf(GraphicsProcessor& processor, double now) {
    if (!processor.reader)
        return std::nullopt;
    const GPUFigures figures = processor.reader->read(now);
    processor.power.noteLoad(figures.load, now);
    return figures;
}

/// The library attaches to all graphics processors at once. So it is asked only while each of
/// them may be touched, and keeps hold of them only while none of them may sleep.
std::optional<GPUFigures> GraphicsProcessors::nvmlFigures(GraphicsProcessor& asked, double now) {
    bool mayRead = true, maySleep = false, isAwake = true;
    for (const auto& [key, processor] : processors_) {
        if (!isNVIDIA(*processor))
            continue;
        const State state = processor->power.look(now);
        mayRead = mayRead && state == State::awake;
        isAwake = isAwake && (processor.get() != &asked || state == State::awake);
        maySleep = maySleep || processor->power.maySleep();
    }
    if (!mayRead)
        nvml_->letGo();
    else
        nvml_->request(maySleep ? NVMLReadings::Hold::letGo : NVMLReadings::Hold::kept);
    const auto figures = isAwake ? nvml_->answer(asked.device.address) : std::nullopt;
    if (mayRead)
        asked.power.noteLoad(figures ? figures->load : std::nullopt, now);
    return figures;
}

}  // namespace vantor
