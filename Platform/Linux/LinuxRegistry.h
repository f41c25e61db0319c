#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/Linux/DeviceFiles.h"
#include "Platform/Linux/GraphicsDevices.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/NVMLReadings.h"
#include "Platform/Registry.h"

namespace vantor {

/// Where things are that the registry reads.
struct RegistrySources {
    KernelFiles kernel;
    std::filesystem::path root = "/";  // of the list of device names
    std::string nvml = NVMLReadings::kLibrary;
};

/// A graphics processor as the other ports see it.
struct GraphicsView {
    bool isIntegrated = false;
    struct Display {
        DisplayConnector connector;
        RegistryObject object;  // the display, behind its plug
    };
    std::vector<Display> displays;
};

/// The graphics processors on the PCI bus, with the bridges above them and the plugs and displays
/// below, by the property names under which they are asked for.
/// Shape:  found when something is first asked, and again after `noteChanged`; in between, only
///         an "IOAccelerator" is read anew, when it is asked for its properties, and at most
///         every kFreshSeconds. Without a graphics processor nothing is read again.
///         Of one that sleeps nothing is read but its `uevent` and its power; it has no displays
///         and empty statistics.
/// Thread: main queue.
class LinuxRegistry final : public Registry {
public:
    static constexpr double kFreshSeconds = 0.25;

    /// All outlive it.
    LinuxRegistry(const Clock& clock, DeviceFiles& files, RegistrySources sources = {});
    ~LinuxRegistry() override;

    /// A device came, went or changed.
    void noteChanged() noexcept { isFound_ = false; }
    /// In the registry's order.
    std::vector<GraphicsView> graphics();

    RegistryObject root() override;
    std::vector<RegistryObject> objectsMatching(const PropertyValue::Dictionary& matching) override;
    RegistryObject objectAtPath(std::string_view path) override;

private:
    class Entry;
    class Accelerator;
    struct Processor;

    void find();
    void findIfChanged();
    std::shared_ptr<Entry> enter(const std::string& key, std::string_view className,
                                 std::string_view name, const std::shared_ptr<Entry>& parent,
                                 PropertyValue::Dictionary properties);
    std::shared_ptr<Entry> enterParents(const GraphicsDevice& device);
    void enterProcessor(const GraphicsDevice& device);
    void enterDisplays(const std::shared_ptr<Entry>& processor, const GraphicsDevice& device);
    void enterDisplay(const std::shared_ptr<Entry>& processor, const DisplayConnector& connector,
                      const std::string& key);
    Processor& processorOf(const GraphicsDevice& device);
    std::string modelOf(Processor& processor);
    void setUpNVML();
    void readAnew(Processor& processor);
    std::optional<GPUFigures> figuresOf(Processor& processor, double now);
    std::optional<GPUFigures> nvmlFigures(Processor& processor, double now);

    const Clock& clock_;
    DeviceFiles& files_;
    RegistrySources sources_;
    bool isFound_ = false;
    std::uint64_t lastID_ = 0;
    std::map<std::string, std::shared_ptr<Entry>> entries_;  // all that ever were
    std::map<std::string, std::unique_ptr<Processor>> processors_;
    std::vector<GraphicsView> graphics_;
    std::vector<std::string> nvidia_;  // addresses of what NVML can read
    std::unique_ptr<NVMLReadings> nvml_;
    std::shared_ptr<Entry> root_;
};

}  // namespace vantor
