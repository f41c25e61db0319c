#include "Platform/Linux/GraphicsAccelerator.h"

#include "Platform/Linux/GraphicsProperties.h"

namespace vantor {
namespace {

constexpr const char* kStatistics = "PerformanceStatistics";
constexpr const char* kSurfaces = "SurfaceList";
constexpr const char* kTotalSize = "VRAM,totalsize";
constexpr const char* kPowerState = "power-state";

const char* nameOf(GPUPower::State state) noexcept {
    switch (state) {
    case GPUPower::State::asleep:
        return "asleep";
    case GPUPower::State::waking:
        return "waking";
    case GPUPower::State::resting:
        return "resting";
    case GPUPower::State::awake:
        break;
    }
    return "awake";
}

}  // namespace

GraphicsAccelerator::GraphicsAccelerator(std::uint64_t id, std::string_view name)
    : RegistryTreeEntry(id, "IOAccelerator", name) {
    setFigure(properties_, kStatistics, PropertyValue::Dictionary{});
    setFigure(properties_, kSurfaces, PropertyValue::Array{});
}

void GraphicsAccelerator::attach(GraphicsProcessors* processors,
                                 GraphicsProcessor* processor) noexcept {
    processors_ = processors;
    processor_ = processor;
}

void GraphicsAccelerator::forgetIfDetached() {
    if (processor_ == nullptr)
        setFigures(std::nullopt);
}

const PropertyValue::Dictionary* GraphicsAccelerator::properties() {
    readAnew();
    return RegistryTreeEntry::properties();
}

const PropertyValue& GraphicsAccelerator::property(std::string_view key) {
    readAnew();
    return RegistryTreeEntry::property(key);
}

void GraphicsAccelerator::readAnew() {
    const auto reading = processors_ != nullptr ? processors_->read(*processor_) : std::nullopt;
    if (!reading)
        return;
    setFigure(properties_, kPowerState, nameOf(reading->power));
    // What one said before it rested still holds.
    if (reading->power != GPUPower::State::resting)
        setFigures(reading->figures);
}

/// Nothing: it can't be read, or mustn't be.
void GraphicsAccelerator::setFigures(const std::optional<GPUFigures>& figures) {
    // The dictionary is ours and isn't constant; a property value only hands it out so.
    auto& statistics = const_cast<PropertyValue::Dictionary&>(
        *properties_.find(std::string_view(kStatistics))->second.dictionary());
    vantor::setFigures(statistics, figures.value_or(GPUFigures{}));
    if (figures && figures->memoryTotal)
        setFigure(properties_, kTotalSize, PropertyValue(*figures->memoryTotal));
    // Something is on a processor that is awake, even if only it itself draws there.
    const auto surfaces = properties_.find(std::string_view(kSurfaces));
    const bool hasSurface = !surfaces->second.array()->empty();
    if (hasSurface != figures.has_value())
        surfaces->second = PropertyValue::Array(figures ? 1 : 0, PropertyValue("framebuffer"));
}

}  // namespace vantor
