#include "Platform/Linux/LinuxRegistry.h"

#include <utility>

#include <fmt/format.h>

#include "Platform/Linux/GraphicsAccelerator.h"
#include "Platform/Linux/GraphicsProperties.h"
#include "Platform/RegistryTreeEntry.h"

namespace vantor {

LinuxRegistry::LinuxRegistry(const Clock& clock, DeviceFiles& files, RegistrySources sources)
    : files_(files), sources_(std::move(sources)), processors_(clock, files, sources_),
      root_(enter("", "IORegistryEntry", "Root", nullptr, {})) {}

LinuxRegistry::~LinuxRegistry() {
    for (const auto& [key, accelerator] : accelerators_)
        accelerator->attach(nullptr, nullptr);
}

void LinuxRegistry::findIfChanged() {
    if (!std::exchange(isFound_, true))
        find();
}

void LinuxRegistry::find() {
    for (const auto& [key, entry] : entries_)
        entry->leave();
    for (const auto& [key, accelerator] : accelerators_) {
        accelerator->leave();
        accelerator->attach(nullptr, nullptr);
    }
    root_->becomeRoot();
    processors_.leave();
    graphics_.clear();
    for (const GraphicsDevice& device : findGraphicsDevices(files_, sources_.kernel))
        enterProcessor(device);
    for (const auto& [key, accelerator] : accelerators_)
        accelerator->forgetIfDetached();
    processors_.settle();
}

LinuxRegistry::Entry LinuxRegistry::enter(const std::string& key, std::string_view className,
                                          std::string_view name, const Entry& parent,
                                          PropertyValue::Dictionary properties) {
    Entry& entry = entries_[key];
    if (!entry)
        entry = std::make_shared<RegistryTreeEntry>(++lastID_, className, name);
    entry->setProperties(std::move(properties));
    if (parent)
        RegistryTreeEntry::add(parent, entry);
    return entry;
}

/// The bus and the bridges down to the device.
LinuxRegistry::Entry LinuxRegistry::enterParents(const GraphicsDevice& device) {
    Entry above = root_;
    std::string key;
    for (const std::string& name : device.parents) {
        key += "/" + name;
        const bool isBus = above == root_;
        PropertyValue::Dictionary properties;
        setFigure(properties, "IOName", isBus ? "pci-host" : "pci-bridge");
        above = enter(key, isBus ? "IOPCIHostBridge" : "IOPCIDevice", name, above,
                      std::move(properties));
    }
    return above;
}

void LinuxRegistry::enterProcessor(const GraphicsDevice& device) {
    GraphicsProcessor& processor = processors_.enter(device);
    const std::string key =
        fmt::format("{} {:04x}:{:04x}", device.address, device.id.vendor, device.id.device);
    const Entry entry = enter(key, "IOPCIDevice", device.address, enterParents(device),
                              processorProperties(device, processors_.modelOf(processor)));
    enterAccelerator(key + " " + device.driver, entry, processor);
    graphics_.push_back({.isIntegrated = device.isIntegrated, .displays = {}});
    if (processors_.isAsleep(processor))
        return;
    for (const DisplayConnector& connector : readConnectors(files_, device.folder))
        enterDisplay(entry, connector, device.address + " " + connector.name);
}

void LinuxRegistry::enterAccelerator(const std::string& key, const Entry& parent,
                                     GraphicsProcessor& processor) {
    auto& accelerator = accelerators_[key];
    const std::string& driver = processor.device.driver;
    if (!accelerator)
        accelerator =
            std::make_shared<GraphicsAccelerator>(++lastID_, driver.empty() ? "none" : driver);
    accelerator->attach(&processors_, &processor);
    RegistryTreeEntry::add(parent, accelerator);
}

void LinuxRegistry::enterDisplay(const Entry& processor, const DisplayConnector& connector,
                                 const std::string& key) {
    const Entry plug = enter(key, "IODisplayConnect", connector.name, processor, {});
    const Entry display = enter(key + " display", "IODisplay", "display", plug, {});
    auto properties = displayProperties(connector);
    setFigure(properties, "IODisplayLocation", display->path().value_or(""));
    display->setProperties(std::move(properties));
    graphics_.back().displays.push_back({connector, display});
}

std::vector<GraphicsView> LinuxRegistry::graphics() {
    findIfChanged();
    return graphics_;
}

RegistryObject LinuxRegistry::root() {
    findIfChanged();
    return root_;
}

std::vector<RegistryObject>
LinuxRegistry::objectsMatching(const PropertyValue::Dictionary& matching) {
    findIfChanged();
    return objectsBelow(root_, matching);
}

RegistryObject LinuxRegistry::objectAtPath(std::string_view path) {
    findIfChanged();
    return objectBelow(root_, path);
}

}  // namespace vantor
