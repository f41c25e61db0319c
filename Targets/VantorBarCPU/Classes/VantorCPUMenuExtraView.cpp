#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Foundation/NumberText.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/VTRImageCache.h"
#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

using Painting::Context;

/// Calls `visit` with each mode of the text; one that isn't a number is 0.
template <class Visit>
void forEachMode(std::string_view text, Visit&& visit) {
    for (;;) {
        const auto comma = text.find(',');
        visit(leadingInteger(text.substr(0, comma)));
        if (comma == std::string_view::npos)
            return;
        text.remove_prefix(comma + 1);
    }
}

/// How a family of graphics processors is shown.
struct GPUIcon {
    std::string_view dark, white;
    std::int64_t answer;
};

constexpr GPUIcon kIntegratedIcon{"menubar-gpu-intelorintegrated",
                                  "menubar-gpu-intelorintegrated-white", 10};
constexpr GPUIcon kNVIDIAIcon{"menubar-gpu-nvidia", "menubar-gpu-nvidia-white", 18};
constexpr GPUIcon kATIIcon{"menubar-gpu-ati", "menubar-gpu-ati-white", 16};
constexpr GPUIcon kDiscreteIcon{"menubar-gpu-discrete", "menubar-gpu-discrete-white", 16};

/// What a model's name says, in small letters, the first that fits.
constexpr std::pair<std::string_view, const GPUIcon&> kIconsByModel[] = {
    {"nvidia", kNVIDIAIcon}, {"ati", kATIIcon}, {"radeon", kATIIcon}, {"amd", kATIIcon}};

/// Without an active graphics processor, or without its model, there is nothing to tell the
/// families apart by, and the first of the named ones stands for all.
const GPUIcon& iconOf(const GPUStatCollectorItem* gpu) noexcept {
    if (gpu != nullptr && gpu->intergrated)
        return kIntegratedIcon;
    if (gpu == nullptr || !gpu->model)
        return kNVIDIAIcon;
    for (const auto& [word, icon] : kIconsByModel)
        if (modelContains(gpu->model, word))
            return icon;
    return kDiscreteIcon;
}

}  // namespace

/// One paint of the whole item: which collectors a mode reads, and what was painted already.
struct VantorCPUMenuExtraView::Paint {
    Paint(VantorCPUMenuExtraView& painter, Context& where, std::int64_t start)
        : view(painter), context(where), offset(start),
          collector(CPUStatCollector::sharedCPUCollector()),
          combineCores(VTRBoolForKey("CPU_MenubarCombineCores")),
          singleHistory(VTRBoolForKey("CPU_MenubarSingleHistoryGraph")),
          pairs(VTRBoolForKey("CPU_CombineLogicalCores") && collector.hyperThreading()),
          groupItems(VTRBoolForKey("CPU_MenubarGroupItems")) {}

    std::int64_t passes() const noexcept {
        if (combineCores)
            return 1;
        return pairs ? collector.coreCount() / 2 : collector.coreCount();
    }

    void walk(std::string_view modes) {
        const std::int64_t count = passes();
        if (groupItems) {
            forEachMode(modes, [&](std::int64_t mode) {
                for (std::int64_t pass = 0; pass < count; ++pass)
                    draw(pass, mode);
            });
            return;
        }
        for (std::int64_t pass = 0; pass < count; ++pass)
            forEachMode(modes, [&](std::int64_t mode) { draw(pass, mode); });
    }

    /// Some modes stand once, whatever the number of cores.
    void draw(std::int64_t pass, std::int64_t mode) {
        if (pass >= 1 && (mode == kLabel || (mode == kHistory && singleHistory)))
            return;
        if ((mode == kLoad && std::exchange(loadDrawn, true)) ||
            (mode == kGPU && std::exchange(gpuDrawn, true)) ||
            (mode == kCombinedVertical && std::exchange(combinedDrawn, true)))
            return;
        if (mode == kCombinedVertical)
            drawAllCores();
        else if (mode == kHistory && singleHistory)
            drawWith(mode, {&collector});
        else
            drawPass(pass, mode);
    }

    void drawWith(std::int64_t mode, std::initializer_list<const StatSamples*> collectors) {
        offset += view.drawWithMode(context, mode, offset, {collectors.begin(), collectors.size()});
    }

    void drawPass(std::int64_t pass, std::int64_t mode) {
        const auto core = static_cast<std::size_t>(pass);
        if (combineCores)
            drawWith(mode, {&collector});
        else if (core >= collector.cpuCount())
            drawWith(mode, {});
        else if (pairs && core + 1 < collector.cpuCount())
            // The pairs overlap: cores 0 and 1, then 1 and 2.
            drawWith(mode, {&collector.core(core), &collector.core(core + 1)});
        else
            drawWith(mode, {&collector.core(core)});
    }

    void drawAllCores() {
        std::vector<const StatSamples*>& cores = view.cores_;
        cores.clear();
        if (pairs)
            for (const auto& core : collector.physicalCores())
                cores.push_back(core.get());
        else
            for (std::size_t core = 0; core < collector.cpuCount(); ++core)
                cores.push_back(&collector.core(core));
        offset += view.drawWithMode(context, kCombinedVertical, offset, cores);
    }

    VantorCPUMenuExtraView& view;
    Context& context;
    std::int64_t offset;
    CPUStatCollector& collector;
    const bool combineCores, singleHistory, pairs, groupItems;
    bool loadDrawn = false, gpuDrawn = false, combinedDrawn = false;
};

VantorCPUMenuExtraView::VantorCPUMenuExtraView(const Rect& frame, VTRModuleDelegate* extra)
    : VTRMenuExtraContentView(frame, extra) {
    VantorCPUMenuExtraView::loadConfig();
}

/// With the breakdown, the sum of user and system is painted first and user over it, so that the
/// system's share shows above the user's.
MenuExtraConfig VantorCPUMenuExtraView::defaultConfig() {
    const auto graph = [](int index, std::vector<int> keys, std::int64_t breakdown,
                          std::string_view colorKey) {
        GraphDictionary made;
        made.index = index;
        made.keys = std::move(keys);
        made.divide = 100;
        made.conditions = {{"CPU_MenubarGraphBreakdowns", breakdown}};
        made.custom = {"CPU_MenubarGraphCustomColors", colorKey};
        return made;
    };
    GraphDictionary system = graph(2, {0, 1}, 1, "CPU_MenubarGraphSystem");
    system.defaultColor = 1;
    GraphDictionary user = graph(1, {0}, 1, "CPU_MenubarGraphUser");
    user.defaultColor = 0;
    GraphDictionary overall = graph(0, {0, 1}, 0, "CPU_MenubarGraphOverall");
    overall.gradient = true;

    MenuExtraConfig config;
    config.historyGraphs = config.verticalGraphs = config.pieGraphs = {system, user, overall};
    config.historyGraphWidth = "CPU_MenubarGraphWidth";
    config.label = "menubar-label-cpu";
    config.labelWhite = "menubar-label-cpu-white";

    TextItem percentage;
    percentage.type = static_cast<int>(TextType::percentage);
    percentage.font = "CPU_MenubarTextSize";
    percentage.color = "CPU_MenubarTextColor";
    percentage.shadow = "CPU_MenubarTextShadowColor";
    percentage.keys = {0, 1};
    TextItem load;
    load.type = static_cast<int>(TextType::formatted);
    load.format = "%.2f";
    load.font = "Load_MenubarTextSize";
    load.color = "Load_MenubarTextColor";
    load.shadow = "Load_MenubarTextShadowColor";
    load.keys = {0};
    config.textItems = {{"cpu-percentage", percentage}, {"load-text", load}};
    return config;
}

void VantorCPUMenuExtraView::loadConfig() { mutableConfig() = defaultConfig(); }

std::int64_t VantorCPUMenuExtraView::drawAtOffset(Context& context, std::int64_t offset) {
    Paint paint(*this, context, offset);
    paint.walk(VTRObjectForKey("CPU_MenubarMode").stringValue());
    return paint.offset > 0 ? paint.offset - kGap : paint.offset;
}

std::int64_t VantorCPUMenuExtraView::drawWithMode(Context& context, std::int64_t mode,
                                                  std::int64_t offset, SampleSources collectors) {
    switch (mode) {
    case kHistory:
        return drawHistoryGraphWithOffset(context, offset, collectors);
    case kVertical:
        return drawVerticalGraphWithOffset(context, offset, collectors);
    case kPercentage:
        return drawTextAtOffset(context, offset, collectors, "cpu-percentage");
    case kPie:
        return drawPieGraphWithOffset(context, offset, collectors);
    case kLoad: {
        const StatSamples* const load[] = {&LoadStatCollector::sharedLoadCollector()};
        return drawTextAtOffset(context, offset, load, "load-text");
    }
    case kGPU:
        return drawGPUIcon(context, offset);
    case kCombinedVertical:
        return drawCombinedVerticalGraphWithOffset(context, offset, collectors);
    case kLabel:
        return drawLabel(context, offset);
    default:
        return 0;
    }
}

std::int64_t VantorCPUMenuExtraView::drawGPUIcon(Context& context, std::int64_t offset) {
    const GPUIcon& icon = iconOf(GPUStatCollector::sharedGPUCollector().activeGPU());
    const bool white = BarState::current(isMenuDown()).isInkWhite(storedSkinColor);
    if (const auto image = VTRImageNamed(white ? icon.white : icon.dark))
        context.drawImage(*image, Point{static_cast<double>(offset), 2});
    return icon.answer;
}

}  // namespace vantor::inline VANTOR_MODULE
