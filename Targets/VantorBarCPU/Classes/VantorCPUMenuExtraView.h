#pragma once

#include <cstdint>
#include <vector>

#include "Shared/Views/VTRMenuExtraContentView.h"

namespace vantor::inline VANTOR_MODULE {

class CPUStatCollector;

/// What the processor item shows: the user's modes in the user's order, once for the machine or
/// once for each core.
class VantorCPUMenuExtraView final : public VTRMenuExtraContentView {
public:
    /// The modes of "CPU_MenubarMode".
    enum Mode : std::int64_t {
        kHistory = 0,
        kVertical = 1,
        kPercentage = 2,
        kPie = 3,
        kLoad = 4,
        kGPU = 5,
        kCombinedVertical = 6,
        kLabel = 100
    };

    VantorCPUMenuExtraView(const Rect& frame, VTRModuleDelegate* extra);

    /// The graphs and texts of the item, made anew.
    static MenuExtraConfig defaultConfig();
    void loadConfig() override;
    std::int64_t drawAtOffset(Painting::Context& context, std::int64_t offset) override;
    /// Draws one mode and answers its width; 0 for one that there isn't.
    std::int64_t drawWithMode(Painting::Context& context, std::int64_t mode, std::int64_t offset,
                              SampleSources collectors);

private:
    struct Paint;
    std::int64_t drawGPUIcon(Painting::Context& context, std::int64_t offset);

    std::vector<const StatSamples*> cores_;  // kept, so that a paint doesn't allocate
};

}  // namespace vantor::inline VANTOR_MODULE
