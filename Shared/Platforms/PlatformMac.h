#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Foundation/WeakHandle.h"
#include "Platform/Ports.h"
#include "Shared/Platforms/SensorRecord.h"

namespace vantor::inline VANTOR_MODULE {

struct PlatformModel;

/// The machine that the program runs on: what is known of its model, and what it tells itself.
/// Errors: what can't be found out is "", 0, nothing or an empty list, as each operation says.
/// Thread: main queue, but for `fetchMemoryInfo`.
class PlatformMac {
public:
    /// Without a model the machine isn't one that is known. `ports` outlive it.
    explicit PlatformMac(const Ports& ports, const PlatformModel* model = nullptr);
    virtual ~PlatformMac() = default;
    PlatformMac(const PlatformMac&) = delete;
    PlatformMac& operator=(const PlatformMac&) = delete;

    // What the model answers.

    /// The machine's own one where the model isn't known; "Unknown" without any.
    virtual std::string identifier() const;
    virtual std::string name() const;
    /// Inches; nothing where the model isn't known.
    virtual std::optional<double> screenSize() const;
    /// Megabytes.
    double maximumMemory() const noexcept;
    std::int64_t memorySlots() const noexcept;
    virtual std::string icon() const;
    /// The period in which this machine was made.
    std::optional<std::string> variationName() const;
    virtual std::span<const SensorRecord> supportedSensors() const;
    std::vector<std::string> defaultSensorKeys() const;

    /// The integrated graphics processor is left out.
    bool hideIntergratedGraphics() const noexcept { return hideIntergratedGraphics_; }
    /// Nobody asks which graphics processor drives the screens.
    bool ignoreGraphicsControl() const noexcept { return ignoreGraphicsControl_; }

    // What the machine answers.

    std::string cpu() const;
    /// Megahertz in decimals.
    std::string cpuSpeed() const;
    /// Bytes in decimals.
    std::string memory() const;
    /// "10.11.0"; "0.0.0" and a line in the system log where the system doesn't tell.
    std::string osVersion() const;
    std::optional<std::string> serial() const;
    std::string boardID() const;
    /// The tail of the serial number, which tells production variants apart.
    std::string variation() const;
    /// Of the network interface "en0".
    std::optional<std::string> networkHardwareAdress() const;
    bool isSSLSupported() const noexcept { return true; }

    /// Sets the two that follow where the serial number tells them.
    void decodeSerial();
    std::int64_t manufactureWeek() const noexcept { return manufactureWeek_; }
    /// Two digits, or one for the old form of serial numbers.
    std::int64_t manufactureYear() const noexcept { return manufactureYear_; }

    /// Blocks, so never on the main queue, and this object outlives the call. The slots, or none
    /// after any failure, are stored on the main queue later.
    void fetchMemoryInfo();
    const PropertyValue::Array& memorySlotInfo() const noexcept { return memorySlotInfo_; }
    void setMemorySlotInfo(PropertyValue::Array slots) { memorySlotInfo_ = std::move(slots); }

    /// The display name of a fan's label, or the label.
    static std::string_view nameForFan(std::string_view label) noexcept;

protected:
    bool hideIntergratedGraphics_ = false;
    bool ignoreGraphicsControl_ = false;

private:
    const Ports ports_;
    const PlatformModel* model_;
    PropertyValue::Array memorySlotInfo_;
    std::int64_t manufactureWeek_ = 0, manufactureYear_ = 0;
    WeakSource<PlatformMac> weak_{*this};
};

/// All graphics processors are active at once.
class PlatformMacPro final : public PlatformMac {
public:
    PlatformMacPro(const Ports& ports, const PlatformModel* model) : PlatformMac(ports, model) {
        ignoreGraphicsControl_ = true;
    }
};

class PlatformiMac final : public PlatformMac {
public:
    PlatformiMac(const Ports& ports, const PlatformModel* model) : PlatformMac(ports, model) {
        hideIntergratedGraphics_ = true;
    }
};

/// A machine that only pretends to carry the system-management controller, so that its model
/// says nothing about its sensors.
class FauxMac final : public PlatformMac {
public:
    explicit FauxMac(const Ports& ports) : PlatformMac(ports) {}

    std::string identifier() const override { return "FauxMac"; }
    std::string name() const override { return "FauxMac"; }
    std::optional<double> screenSize() const override { return 0; }
    std::string icon() const override { return "imac-unibody.png"; }
    std::span<const SensorRecord> supportedSensors() const override { return sensors_; }

private:
    std::vector<SensorRecord> sensors_;  // nobody fills it
};

/// The slots in what the profiler says: a property list's first "_items", and their first.
/// Empty where there is no such thing.
PropertyValue::Array memorySlotsOf(std::string_view profile);

}  // namespace vantor::inline VANTOR_MODULE
