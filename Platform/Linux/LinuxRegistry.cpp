#include "Platform/Linux/LinuxRegistry.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "Platform/Linux/AMDGPUReader.h"
#include "Platform/Linux/DRMClientsReader.h"
#include "Platform/Linux/GPUPower.h"

namespace vantor {
namespace {

constexpr const char* kStatistics = "PerformanceStatistics";
constexpr const char* kSurfaces = "SurfaceList";
constexpr const char* kTotalSize = "VRAM,totalsize";
constexpr const char* kPowerState = "power-state";
constexpr std::string_view kNVIDIADriver = "nvidia";
constexpr double kLongAgo = std::numeric_limits<double>::lowest();

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

PropertyValue::Data dataOf(std::string_view text) {
    PropertyValue::Data data;
    for (const char letter : text)
        data.push_back(static_cast<std::byte>(letter));
    return data;
}

/// Four bytes, the lowest first.
PropertyValue::Data dataOf(std::uint32_t number) {
    PropertyValue::Data data;
    for (const int shift : {0, 8, 16, 24})
        data.push_back(static_cast<std::byte>(number >> shift));
    return data;
}

PropertyValue::Dictionary processorProperties(const GraphicsDevice& device, std::string model) {
    PropertyValue::Dictionary properties{
        {"IOName", "display"},
        {"model", dataOf(model)},
        // What tells one card from its twin, and stays so over restarts.
        {"AAPL,slot-name", device.address},
        {"vendor-id", dataOf(std::uint32_t{device.id.vendor})},
        {"device-id", dataOf(std::uint32_t{device.id.device})},
        {"class-code", dataOf(device.classCode)},
        {"driver", device.driver}};
    if (device.isIntegrated)
        properties["built-in"] = dataOf(std::uint32_t{0});
    return properties;
}

PropertyValue::Dictionary displayProperties(const EDID& edid) {
    PropertyValue::Dictionary properties{
        {"DisplayProductID", std::int64_t{edid.product}},
        {"DisplaySerialNumber", std::int64_t{edid.serial}},
        {"DisplayVendorID", std::int64_t{edid.vendor}},
        {"DisplayProductName",
         edid.name.empty() ? fmt::format("{} {:04X}", edidVendorLetters(edid.vendor), edid.product)
                           : edid.name}};
    if (!edid.serialText.empty())
        properties["DisplaySerialString"] = edid.serialText;
    return properties;
}

/// Sets or takes away one figure. What is set again keeps its place, so nothing is allocated.
void setFigure(PropertyValue::Dictionary& figures, const char* key,
               const std::optional<PropertyValue>& value) {
    const auto found = figures.find(std::string_view(key));
    if (value && found != figures.end())
        found->second = *value;
    else if (value)
        figures.emplace(key, *value);
    else if (found != figures.end())
        figures.erase(found);
}

std::optional<PropertyValue> bytes(std::optional<std::uint64_t> count) {
    return count ? std::optional<PropertyValue>(*count) : std::nullopt;
}

std::optional<PropertyValue> freeBytes(std::optional<std::uint64_t> total,
                                       std::optional<std::uint64_t> used) {
    return total && used && *used <= *total ? bytes(*total - *used) : std::nullopt;
}

void setFigures(PropertyValue::Dictionary& statistics, const GPUFigures& figures) {
    const auto& [total, used, sharedTotal, sharedUsed, load] = figures;
    setFigure(statistics, "vramUsedBytes", bytes(used));
    setFigure(statistics, "vramFreeBytes", freeBytes(total, used));
    setFigure(statistics, "gartSizeBytes", bytes(sharedTotal));
    setFigure(statistics, "gartUsedBytes", bytes(sharedUsed));
    setFigure(statistics, "gartFreeBytes", freeBytes(sharedTotal, sharedUsed));
    setFigure(statistics, "Device Utilization %",
              load ? std::optional<PropertyValue>(*load) : std::nullopt);
}

}  // namespace

class LinuxRegistry::Entry : public RegistryEntry {
public:
    Entry(std::uint64_t id, std::string_view className, std::string_view name)
        : id_(id), className_(className), name_(name) {}

    void leave() noexcept {
        parent_.reset();
        children_.clear();
    }
    void setProperties(PropertyValue::Dictionary properties) {
        properties_ = std::move(properties);
    }
    void addChild(const std::shared_ptr<Entry>& child, const std::shared_ptr<Entry>& self) {
        child->parent_ = self;
        children_.push_back(child);
    }
    bool hasChild(const Entry& child) const noexcept {
        return std::ranges::any_of(children_, [&](auto& each) { return each.get() == &child; });
    }

    std::uint64_t entryID() const noexcept override { return id_; }
    std::string_view className() const noexcept override { return className_; }
    std::optional<std::string> name() const override { return name_; }
    std::optional<std::string> path() const override {
        const Entry* top = this;
        for (auto above = parent_.lock(); above; above = above->parent_.lock())
            top = above.get();
        return top->isRoot() ? pathBelow(*top, *this) : std::nullopt;
    }
    const PropertyValue::Dictionary* properties() override { return &properties_; }
    const PropertyValue& property(std::string_view key) override {
        static const PropertyValue kNothing;
        const auto found = properties_.find(key);
        return found == properties_.end() ? kNothing : found->second;
    }
    RegistryObject parent() const override { return parent_.lock(); }
    std::vector<RegistryObject> children() const override {
        return {children_.begin(), children_.end()};
    }

protected:
    PropertyValue::Dictionary properties_;

private:
    static constexpr std::uint64_t kRootID = 1;
    bool isRoot() const noexcept { return id_ == kRootID; }

    std::uint64_t id_;
    std::string className_, name_;
    std::weak_ptr<Entry> parent_;
    std::vector<std::shared_ptr<Entry>> children_;
};

/// One graphics processor, however often it came and went.
struct LinuxRegistry::Processor {
    Processor(DeviceFiles& files, GraphicsDevice found)
        : device(std::move(found)), power(files, device.folder) {}

    GraphicsDevice device;
    GPUPower power;
    std::unique_ptr<GPUReader> reader;  // null for what NVML reads, and for what nobody can
    std::optional<std::string> model;
    std::shared_ptr<Accelerator> accelerator;
    double readAt = kLongAgo;
    bool isThere = false;
};

/// The driver's object: it is read anew when it is asked.
class LinuxRegistry::Accelerator final : public Entry {
public:
    Accelerator(std::uint64_t id, std::string_view name) : Entry(id, "IOAccelerator", name) {
        properties_[kStatistics] = PropertyValue::Dictionary{};
        properties_[kSurfaces] = PropertyValue::Array{};
    }

    /// What reads anew, while the processor is there and the registry, too.
    void attach(LinuxRegistry* registry, Processor* processor) noexcept {
        registry_ = registry;
        processor_ = processor;
    }
    void setPower(GPUPower::State state) { setFigure(properties_, kPowerState, nameOf(state)); }
    /// Nothing: it can't be read, or mustn't be.
    void setFigures(const std::optional<GPUFigures>& figures) {
        // The dictionary is ours and isn't constant; a property value only hands it out so.
        auto& statistics = const_cast<PropertyValue::Dictionary&>(
            *properties_.find(std::string_view(kStatistics))->second.dictionary());
        vantor::setFigures(statistics, figures.value_or(GPUFigures{}));
        if (figures && figures->memoryTotal)
            setFigure(properties_, kTotalSize, bytes(figures->memoryTotal));
        // Something is on a processor that is awake, even if only it itself draws there.
        const bool hasSurface = !properties_.at(kSurfaces).array()->empty();
        if (hasSurface != figures.has_value())
            properties_[kSurfaces] = figures ? PropertyValue::Array{PropertyValue("framebuffer")}
                                             : PropertyValue::Array{};
    }

    const PropertyValue::Dictionary* properties() override {
        readAnew();
        return Entry::properties();
    }
    const PropertyValue& property(std::string_view key) override {
        readAnew();
        return Entry::property(key);
    }

private:
    void readAnew() {
        if (registry_ != nullptr)
            registry_->readAnew(*processor_);
    }

    LinuxRegistry* registry_ = nullptr;
    Processor* processor_ = nullptr;
};

LinuxRegistry::LinuxRegistry(const Clock& clock, DeviceFiles& files, RegistrySources sources)
    : clock_(clock), files_(files), sources_(std::move(sources)),
      root_(enter("", "IORegistryEntry", "Root", nullptr, {})) {}

LinuxRegistry::~LinuxRegistry() {
    for (const auto& [key, processor] : processors_)
        processor->accelerator->attach(nullptr, nullptr);
}

void LinuxRegistry::findIfChanged() {
    if (!std::exchange(isFound_, true))
        find();
}

void LinuxRegistry::find() {
    for (const auto& [key, entry] : entries_)
        entry->leave();
    for (const auto& [key, processor] : processors_) {
        processor->isThere = false;
        processor->accelerator->attach(nullptr, nullptr);
    }
    graphics_.clear();
    for (const GraphicsDevice& device : findGraphicsDevices(files_, sources_.kernel))
        enterProcessor(device);
    setUpNVML();
}

std::shared_ptr<LinuxRegistry::Entry>
LinuxRegistry::enter(const std::string& key, std::string_view className, std::string_view name,
                     const std::shared_ptr<Entry>& parent, PropertyValue::Dictionary properties) {
    auto& entry = entries_[key];
    if (!entry)
        entry = std::make_shared<Entry>(++lastID_, className, name);
    entry->setProperties(std::move(properties));
    if (parent && !parent->hasChild(*entry))
        parent->addChild(entry, parent);
    return entry;
}

/// The bus and the bridges down to the device.
std::shared_ptr<LinuxRegistry::Entry> LinuxRegistry::enterParents(const GraphicsDevice& device) {
    std::shared_ptr<Entry> above = root_;
    std::string key;
    for (const std::string& name : device.parents) {
        key += "/" + name;
        const bool isBus = above == root_;
        above = enter(key, isBus ? "IOPCIHostBridge" : "IOPCIDevice", name, above,
                      {{"IOName", isBus ? "pci-host" : "pci-bridge"}});
    }
    return above;
}

LinuxRegistry::Processor& LinuxRegistry::processorOf(const GraphicsDevice& device) {
    // Another card in the same slot is another processor; the same one behind another driver
    // needs another reader.
    const std::string key = fmt::format("{} {:04x}:{:04x} {}", device.address, device.id.vendor,
                                        device.id.device, device.driver);
    auto& processor = processors_[key];
    if (!processor)
        processor = std::make_unique<Processor>(files_, device);
    processor->device = device;
    if (!processor->accelerator) {
        const std::string name = device.driver.empty() ? "none" : device.driver;
        processor->accelerator = std::make_shared<Accelerator>(++lastID_, name);
        entries_[key + " driver"] = processor->accelerator;
    }
    if (!processor->reader && device.driver == "amdgpu")
        processor->reader = std::make_unique<AMDGPUReader>(
            files_, device.folder,
            device.isIntegrated ? AMDGPUReader::Memory::shared : AMDGPUReader::Memory::own);
    if (!processor->reader && (device.driver == "i915" || device.driver == "xe"))
        processor->reader = std::make_unique<DRMClientsReader>(
            files_, sources_.kernel.proc.string(), device.address,
            device.isIntegrated ? DRMClientsReader::Memory::shared : DRMClientsReader::Memory::own);
    return *processor;
}

/// The driver knows best, but one that sleeps isn't asked.
std::string LinuxRegistry::modelOf(Processor& processor) {
    if (!processor.model && processor.power.look(clock_.monotonic()) != GPUPower::State::asleep)
        processor.model = modelByDriver(files_, sources_.kernel, processor.device);
    if (!processor.model)
        processor.model = graphicsModelByList(processor.device.id, sources_.root);
    return *processor.model;
}

void LinuxRegistry::enterProcessor(const GraphicsDevice& device) {
    Processor& processor = processorOf(device);
    processor.isThere = true;
    const auto parent = enterParents(device);
    const auto entry = enter(
        fmt::format("{} {:04x}:{:04x}", device.address, device.id.vendor, device.id.device),
        "IOPCIDevice", device.address, parent, processorProperties(device, modelOf(processor)));
    entry->addChild(processor.accelerator, entry);
    processor.accelerator->attach(this, &processor);
    graphics_.push_back({.isIntegrated = device.isIntegrated, .displays = {}});
    const auto state = processor.power.look(clock_.monotonic());
    if (state != GPUPower::State::asleep)
        enterDisplays(entry, device);
}

void LinuxRegistry::enterDisplays(const std::shared_ptr<Entry>& processor,
                                  const GraphicsDevice& device) {
    for (const DisplayConnector& connector : readConnectors(files_, device.folder))
        enterDisplay(processor, connector, device.address + " " + connector.name);
}

void LinuxRegistry::enterDisplay(const std::shared_ptr<Entry>& processor,
                                 const DisplayConnector& connector, const std::string& key) {
    const auto plug = enter(key, "IODisplayConnect", connector.name, processor, {});
    auto properties = displayProperties(connector.edid.value_or(EDID{}));
    if (!connector.edid)
        properties = {{"DisplayProductName", connector.name}};
    const auto display = enter(key + " display", "IODisplay", "display", plug, {});
    properties["IODisplayLocation"] = display->path().value_or("");
    display->setProperties(std::move(properties));
    graphics_.back().displays.push_back({connector, display});
}

void LinuxRegistry::setUpNVML() {
    std::vector<std::string> addresses;
    for (const auto& [key, processor] : processors_)
        if (processor->isThere && processor->device.driver == kNVIDIADriver)
            addresses.push_back(processor->device.address);
    if (addresses == nvidia_)
        return;
    nvidia_ = addresses;
    nvml_.reset();
    if (!addresses.empty())
        nvml_ = std::make_unique<NVMLReadings>(std::move(addresses), sources_.nvml);
}

void LinuxRegistry::readAnew(Processor& processor) {
    const double now = clock_.monotonic();
    if (now - processor.readAt < kFreshSeconds)
        return;
    processor.readAt = now;
    const auto state = processor.power.look(now);
    processor.accelerator->setPower(state);
    if (state == GPUPower::State::resting)
        return;  // what it said before it rested still holds
    const bool isAwake = state == GPUPower::State::awake;
    const bool isNVIDIA = processor.device.driver == kNVIDIADriver;
    if (isNVIDIA)
        processor.accelerator->setFigures(nvmlFigures(processor, now));
    else
        processor.accelerator->setFigures(isAwake ? figuresOf(processor, now) : std::nullopt);
}

/// Nothing where nobody can read it.
std::optional<GPUFigures> LinuxRegistry::figuresOf(Processor& processor, double now) {
    if (!processor.reader)
        return std::nullopt;
    const GPUFigures figures = processor.reader->read(now);
    processor.power.noteLoad(figures.load, now);
    return figures;
}

/// The library attaches to all graphics processors at once. So it is asked only while each of
/// them may be touched, and keeps hold of them only while none of them may sleep.
std::optional<GPUFigures> LinuxRegistry::nvmlFigures(Processor& asked, double now) {
    bool mayRead = true, maySleep = false, isAsleep = false;
    for (const auto& [key, processor] : processors_) {
        if (!processor->isThere || processor->device.driver != kNVIDIADriver)
            continue;
        const auto state = processor->power.look(now);
        mayRead = mayRead && state == GPUPower::State::awake;
        isAsleep = isAsleep || (processor.get() == &asked && state != GPUPower::State::awake);
        maySleep = maySleep || processor->power.maySleep();
    }
    if (!mayRead)
        nvml_->letGo();
    else
        nvml_->request(maySleep ? NVMLReadings::Hold::letGo : NVMLReadings::Hold::kept);
    const auto figures = isAsleep ? std::nullopt : nvml_->answer(asked.device.address);
    if (mayRead)
        asked.power.noteLoad(figures ? figures->load : std::nullopt, now);
    return figures;
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
