#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"
#include "Foundation/WeakHandle.h"
#include "Platform/Displays.h"
#include "Platform/Registry.h"
#include "Shared/Collectors/GPUStatCollectorItem.h"
#include "Shared/Collectors/StatCollector.h"

namespace vantor::inline VANTOR_MODULE {

/// The graphics processors: memory in use and load of each, which of them drives the screens,
/// which displays hang on it, and the window server's frame rate.
/// Each is an item with a history of its own under a key that stays its own over runs. The list is
/// fixed by `fetchGPUS`; what has no properties any more goes on without figures.
/// Errors: none. What can't be found out is -1 or absent.
/// Thread: main queue; the history may be loaded elsewhere before, as with every collector.
class GPUStatCollector final : public StatCollector {
public:
    static constexpr std::size_t sampleCount() noexcept { return 5; }

    explicit GPUStatCollector(const Ports& ports);
    ~GPUStatCollector() override;

    static GPUStatCollector& sharedGPUCollector();
    /// Ends the shared collector, if there is one; the next use makes a new one.
    static void cleanupShared() noexcept;
    void cleanup() noexcept override;

    // What a setup does once, in this order, before the first `updateStats`.
    /// Listens to changes of the displays, and looks whether there is a service that knows the
    /// active processor.
    void loadNotifications();
    /// Finds the processors. One that had a history becomes its live item.
    void fetchGPUS();
    void updateDisplays();
    /// Without a service that knows it, all are active.
    void updateActiveGPU();

    /// Reads them all and takes a sample of each.
    void updateGPUS();
    /// After a change of the displays.
    void displaysChanged();
    /// While nobody looks, at every third tick, whatever the delegates say.
    bool shouldUpdateStateForSequence(int sequence) override;

    /// The first that is active, or null.
    const GPUStatCollectorItem* activeGPU() const noexcept;
    /// One of `items`.
    const GPUStatCollectorItem& gpu(std::size_t index) const noexcept;
    /// "items", with the "description" of each.
    PropertyValue::Dictionary overview() const;
    /// The frame rate; the last one known.
    float fps() const noexcept { return fps_; }
    void setFps(float fps) noexcept { fps_ = fps; }

    /// The magnitude of a number, of a text's, or of the four bytes that data begins with; else 0.
    static double convertValue(const PropertyValue& value) noexcept;
    /// Data as ASCII, or nothing where it isn't; all else as it stands.
    static PropertyValue convertString(const PropertyValue& value);
    /// A whole number as an unsigned one of 64 bits; one with a fraction, or a text's, as it
    /// stands; 0 for nothing.
    static double convertCFNumber(const PropertyValue& number) noexcept;

protected:
    void measure() override;
    std::unique_ptr<StatCollectorItem> makeItem() const override;

private:
    template <class Visit>
    void forEachGPU(Visit&& visit);
    bool addGPU(const PropertyValue::Dictionary& device, const RegistryObject& object,
                bool isFirst);
    void findIntegratedByName();
    void addDisplay(const RegistryObject& display, const PropertyValue::Dictionary& properties,
                    const RegistryObject& device, const std::vector<Screen>& screens);
    void updateGPU(GPUStatCollectorItem& gpu, double time, double identifier) const;

    float fps_ = 0;
    bool graphicsControlConnection_ = false;
    Observation displayChange_;
    WeakSource<GPUStatCollector> self_{*this};
};

template <class Visit>
void GPUStatCollector::forEachGPU(Visit&& visit) {
    for (const auto& item : mutableItems())
        visit(static_cast<GPUStatCollectorItem&>(*item));  // `makeItem` makes no others
}

}  // namespace vantor::inline VANTOR_MODULE
