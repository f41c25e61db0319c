#include "Shared/Collectors/GPUStatCollector.h"

#include <cmath>
#include <cstdint>

#include "Platform/Clock.h"
#include "Platform/GraphicsControl.h"
#include "Platform/WindowServer.h"
#include "Shared/Extensions/KOLIOKitUtilities.h"
#include "Shared/KOLVersions.h"
#include "Shared/Platforms/PlatformController.h"
#include "Shared/Platforms/PlatformMac.h"
#include "Shared/ProcessContext.h"

// The collector and its measuring. How it finds the processors is in GPUStatCollectorDevices.cpp,
// how their displays in GPUStatCollectorDisplays.cpp.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kTicksUnwatched = 3;
constexpr double kSecondLookSeconds = 0.5;  // a change is often not complete when it is told
constexpr double kBytesPerMegabyte = 1024 * 1024;

/// Of one whose memory wasn't known when it was found; 0 while it still isn't.
double totalMemoryOfDriver(const RegistryObject& driver) {
    const auto figure = [&](std::string_view key) {
        return GPUStatCollector::convertValue(KOLIOKitUtilities::property(key, driver));
    };
    const double megabytes = figure("VRAM,totalMB");
    return megabytes > 0 ? megabytes * kBytesPerMegabyte : figure("VRAM,totalsize");
}

std::int64_t surfaceCount(const RegistryObject& driver) {
    const PropertyValue& list = KOLIOKitUtilities::property("SurfaceList", driver);
    if (const auto* const array = list.array())
        return std::ssize(*array);
    const auto* const dictionary = list.dictionary();
    return dictionary != nullptr ? std::ssize(*dictionary) : 0;
}

}  // namespace

GPUStatCollector::GPUStatCollector(const Ports& ports)
    : StatCollector(ports, "gpu", "<GPUStatCollector>", sampleCount()) {
    setTablePrefix("gpu");
    setStorageType(StorageKind::items);
    mutableConfig() = {
        .addSampleIDKeys = {"sample", "id"},
        .addSampleMap = {{"processor", 1}, {"memory", 0}},
        .sampleKeys = {{"processor", 1}, {"memory", 0}},
        .emptySampleKeys = {},
        .xmlSampleKeys = {},
        .sqlInsert = "insert into %@ (empty, sample, time) values (?, ?, ?)",
        .sqlInsertKeys = {"empty", "sample", "time"},
        .sqlCreate = "create table %@ (sample double NOT NULL, time double NOT NULL, "
                     "uuid varchar(100) NOT NULL, processor double NOT NULL, "
                     "memory double NOT NULL)",
        .sqlCreateLong = "create table %@ (sample double, time double, empty integer, "
                         "uuid varchar(100), processor double NOT NULL, memory double NOT NULL)",
        .sqlCreateID = "create table %@ (sample double PRIMARY KEY NOT NULL, "
                       "time double NOT NULL, empty integer NOT NULL)",
        .sqlCreateIDLong = "create table %@ (sample double, time double, empty integer)",
        .sqlInsertItem = "insert into %@ (sample, time, uuid, processor, memory) "
                         "values (?, ?, ?, ?, ?)",
        .sqlInsertItemKeys = {"sample", "time", "uuid", "processor", "memory"}};
}

GPUStatCollector::~GPUStatCollector() = default;

GPUStatCollector& GPUStatCollector::sharedGPUCollector() {
    return ProcessContext::current().gpuCollector();
}

void GPUStatCollector::cleanupShared() noexcept {
    ProcessContext& context = ProcessContext::current();
    if (GPUStatCollector* const collector = context.existingGPUCollector())
        collector->cleanup();
    context.dropGPUCollector();
}

void GPUStatCollector::cleanup() noexcept {
    StatCollector::cleanup();
    displayChange_.end();
}

std::unique_ptr<StatCollectorItem> GPUStatCollector::makeItem() const {
    return std::make_unique<GPUStatCollectorItem>();
}

void GPUStatCollector::loadNotifications() {
    displayChange_ = ports().displays.notificationCenter().observe(
        std::string(kDisplaysReconfigured), [this](const Notification&) {
            displaysChanged();
            ports().mainQueue.after(kSecondLookSeconds, [collector = self_.handle()] {
                if (GPUStatCollector* const self = collector.get())
                    self->displaysChanged();
            });
        });
    if (!PlatformController::currentPlatform().ignoreGraphicsControl())
        graphicsControlConnection_ = ports().graphicsControl.open();
}

void GPUStatCollector::displaysChanged() {
    updateDisplays();
    const bool wasEnabled = enabled();
    setEnabled(true);
    updateStats();
    setEnabled(wasEnabled);
    updateActiveGPU();
}

void GPUStatCollector::updateActiveGPU() {
    if (!graphicsControlConnection_) {
        forEachGPU([](GPUStatCollectorItem& gpu) { gpu.connected = true; });
        return;
    }
    const auto active = ports().graphicsControl.activeGPU();
    forEachGPU([active](GPUStatCollectorItem& gpu) {
        gpu.connected =
            active == (gpu.intergrated ? GraphicsControl::kIntegrated : GraphicsControl::kDiscrete);
    });
}

bool GPUStatCollector::shouldUpdateStateForSequence(int sequence) {
    return enabled() || sequence % kTicksUnwatched == 0;
}

void GPUStatCollector::measure() {
    if (const auto rate = ports().windowServer.frameRate())
        fps_ = static_cast<float>(*rate);
    updateGPUS();
    ports().mainQueue.async([collector = self_.handle()] {
        if (GPUStatCollector* const self = collector.get())
            self->tellDelegates(0);
    });
}

void GPUStatCollector::updateGPUS() {
    const double sampleID = nextSampleID();
    const double time = ports().clock.now();
    forEachGPU([&](GPUStatCollectorItem& gpu) { updateGPU(gpu, time, sampleID); });
    SampleRing& ring = historyNow();
    PushSamples(ring);
    ring.setSampleID(0, sampleID);
    ring.setTime(0, time);
}

void GPUStatCollector::updateGPU(GPUStatCollectorItem& gpu, double time, double identifier) const {
    gpu.exists = true;
    if (gpu.totalyMemory == 0)
        gpu.totalyMemory = totalMemoryOfDriver(gpu.registryEntryStats);
    const std::int64_t surfaces = surfaceCount(gpu.registryEntryStats);
    const PropertyValue& statistics =
        KOLIOKitUtilities::property("PerformanceStatistics", gpu.registryEntryStats);
    const GPUUsage usage = usageInStatistics(
        statistics.dictionary(), {.totalBytes = gpu.totalyMemory,
                                  .isIntegrated = gpu.intergrated,
                                  .tellsMemoryInUse = KOLVersions::sharedVersions().isElCapitan()});
    gpu.store(usage, surfaces);
    // Of one that is asleep nothing is drawn.
    const GPUSample sample = gpu.isIdle()
                                 ? GPUSample{}
                                 : sampleOfUsage(usage, gpu.totalyMemory, gpu.hasProcessorUsage());
    gpu.addSampleWithProcessor(sample.processor, sample.memory, time, identifier);
}

const GPUStatCollectorItem& GPUStatCollector::gpu(std::size_t index) const noexcept {
    return static_cast<const GPUStatCollectorItem&>(*items()[index]);
}

const GPUStatCollectorItem* GPUStatCollector::activeGPU() const noexcept {
    for (std::size_t index = 0; index < items().size(); ++index)
        if (gpu(index).connected)
            return &gpu(index);
    return nullptr;
}

PropertyValue::Dictionary GPUStatCollector::overview() const {
    PropertyValue::Array descriptions;
    for (std::size_t index = 0; index < items().size(); ++index)
        descriptions.push_back(
            PropertyValue::Dictionary{{"description", gpu(index).description()}});
    return {{"items", std::move(descriptions)}};
}

}  // namespace vantor::inline VANTOR_MODULE
