#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/Linux/DeviceFiles.h"
#include "Platform/Linux/GraphicsDevices.h"
#include "Platform/Linux/GraphicsProcessors.h"
#include "Platform/Registry.h"

namespace vantor {

class GraphicsAccelerator;
class RegistryTreeEntry;

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
///         every quarter of a second. Without a graphics processor nothing is read again.
///         Of one that sleeps nothing is read but its `uevent` and its power; it has no displays
///         and empty statistics.
/// Thread: main queue.
class LinuxRegistry final : public Registry {
public:
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
    using Entry = std::shared_ptr<RegistryTreeEntry>;

    void find();
    void findIfChanged();
    Entry enter(const std::string& key, std::string_view className, std::string_view name,
                const Entry& parent, PropertyValue::Dictionary properties);
    Entry enterParents(const GraphicsDevice& device);
    void enterProcessor(const GraphicsDevice& device);
    void enterAccelerator(const std::string& key, const Entry& parent,
                          GraphicsProcessor& processor);
    void enterDisplay(const Entry& processor, const DisplayConnector& connector,
                      const std::string& key);

    DeviceFiles& files_;
    RegistrySources sources_;
    GraphicsProcessors processors_;
    bool isFound_ = false;
    std::uint64_t lastID_ = 0;
    std::map<std::string, Entry> entries_;  // all that ever were, but the accelerators
    std::map<std::string, std::shared_ptr<GraphicsAccelerator>> accelerators_;
    std::vector<GraphicsView> graphics_;
    Entry root_;
};

}  // namespace vantor
