#pragma once

#include <cstdint>
#include <string_view>

#include "Platform/Linux/GraphicsProcessors.h"
#include "Platform/RegistryTreeEntry.h"

namespace vantor {

/// A driver's object in the registry: it is read anew when it is asked.
/// Thread: main queue.
class GraphicsAccelerator final : public RegistryTreeEntry {
public:
    GraphicsAccelerator(std::uint64_t id, std::string_view name);

    /// What reads anew, while the processor is there; nulls where nothing does.
    void attach(GraphicsProcessors* processors, GraphicsProcessor* processor) noexcept;
    /// Of a processor that went there is nothing to tell any more.
    void forgetIfDetached();

    const PropertyValue::Dictionary* properties() override;
    const PropertyValue& property(std::string_view key) override;

private:
    void readAnew();
    void setFigures(const std::optional<GPUFigures>& figures);

    GraphicsProcessors* processors_ = nullptr;
    GraphicsProcessor* processor_ = nullptr;
};

}  // namespace vantor
