#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Foundation/TimeZoneRules.h"
#include "Platform/Appearance.h"
#include "Platform/BootTime.h"
#include "Platform/CallStack.h"
#include "Platform/Directories.h"
#include "Platform/LoadAverages.h"
#include "Platform/MachineIdentity.h"
#include "Platform/RegionalSettings.h"
#include "Platform/Simulated/Journal.h"
#include "Platform/SystemLog.h"
#include "Platform/ThisProcess.h"
#include "Platform/TimeZone.h"
#include "Platform/Workspace.h"

// The ports that answer what they were told.

namespace vantor::simulated {

class SimulatedLoadAverages final : public LoadAverages {
public:
    void setLoads(const FixedLoads& loads) noexcept { loads_ = loads; }
    FixedLoads readLoads() noexcept override { return loads_; }

private:
    FixedLoads loads_{{}, 2048};
};

class SimulatedBootTime final : public BootTime {
public:
    /// Nothing makes the reading fail.
    void setBootSeconds(std::optional<std::int64_t> seconds) noexcept { seconds_ = seconds; }
    std::optional<std::int64_t> bootSeconds() const noexcept override { return seconds_; }

private:
    std::optional<std::int64_t> seconds_;
};

/// Everything below one folder; without a folder the user has no places of his own.
class SimulatedDirectories final : public Directories {
public:
    void setRoot(std::optional<std::filesystem::path> root) { root_ = std::move(root); }
    void setResources(std::filesystem::path resources) { resources_ = std::move(resources); }
    /// A place of its own for the logs.
    void setLogs(std::filesystem::path logs) { logs_ = std::move(logs); }

    std::optional<std::filesystem::path> applicationSupport() const override {
        return below("Application Support");
    }
    std::optional<std::filesystem::path> logs() const override {
        return logs_ ? logs_ : below("Logs");
    }
    std::optional<std::filesystem::path> preferences() const override {
        return below("Preferences");
    }
    std::vector<std::filesystem::path> formerPreferences() const override {
        if (!root_)
            return {};
        return {*root_ / "Library/Preferences", *root_ / "Preferences"};
    }
    std::filesystem::path resources() const override { return resources_; }
    std::filesystem::path systemRoot() const override {
        return below("System").value_or("/nonexistent");
    }

private:
    std::optional<std::filesystem::path> below(const char* name) const {
        return root_ ? std::optional(*root_ / name) : std::nullopt;
    }
    std::optional<std::filesystem::path> root_, logs_;
    std::filesystem::path resources_ = "/nonexistent";
};

class SimulatedSystemLog final : public SystemLog {
public:
    explicit SimulatedSystemLog(Journal* journal) noexcept : journal_(journal) {}
    const std::vector<std::string>& lines() const noexcept { return lines_; }
    void write(std::string_view text) noexcept override {
        if (journal_ != nullptr)
            journal_->systemLog(text);
        else
            lines_.emplace_back(text);
    }

private:
    Journal* journal_;
    std::vector<std::string> lines_;  // without a journal
};

class SimulatedWorkspace final : public Workspace {
public:
    explicit SimulatedWorkspace(Journal* journal) noexcept : journal_(journal) {}
    void willSleep() { center_.post(kWorkspaceWillSleep); }
    void didWake() { center_.post(kWorkspaceDidWake); }
    const std::vector<std::string>& launched() const noexcept { return launched_; }
    void setApplicationInformation(std::int64_t processID,
                                   std::optional<PropertyValue::Dictionary> information) {
        information_.insert_or_assign(processID, std::move(information));
    }
    int informationRequests() const noexcept { return informationRequests_; }

    NotificationCenter& notificationCenter() noexcept override { return center_; }
    bool launchApplication(std::string_view name) override {
        launched_.emplace_back(name);
        if (journal_ != nullptr)
            journal_->launch(name);
        return true;
    }
    bool openFile(std::string_view path) override { return launchApplication(path); }
    bool exists(std::string_view path) const override {
        return std::ranges::find(existing_, path) != existing_.end();
    }
    /// From now on there is something at that path.
    void install(std::string path) { existing_.push_back(std::move(path)); }
    /// The icon of what is at that path, for any size.
    void setIcon(std::string path, std::filesystem::path file) {
        icons_.insert_or_assign(std::move(path), std::move(file));
    }
    std::optional<std::filesystem::path> iconFile(std::string_view path, int) const override {
        const auto known = icons_.find(path);
        return known == icons_.end() ? std::nullopt : std::optional(known->second);
    }
    std::optional<PropertyValue::Dictionary>
    applicationInformation(std::int64_t processID) override {
        ++informationRequests_;
        const auto known = information_.find(processID);
        return known == information_.end() ? std::nullopt : known->second;
    }

private:
    Journal* journal_;
    NotificationCenter center_;
    std::vector<std::string> launched_, existing_;
    std::map<std::string, std::filesystem::path, std::less<>> icons_;
    std::map<std::int64_t, std::optional<PropertyValue::Dictionary>> information_;
    int informationRequests_ = 0;
};

class SimulatedAppearance final : public Appearance {
public:
    void setDark(bool dark) noexcept { dark_ = dark; }
    void setContrast(bool contrast) noexcept { contrast_ = contrast; }
    bool isDark() const noexcept override { return dark_; }
    bool increasesContrast() const noexcept override { return contrast_; }

private:
    bool dark_ = false, contrast_ = false;
};

/// Tells what it was told; at first nothing but a version.
class SimulatedMachineIdentity final : public MachineIdentity {
public:
    struct Answers {
        std::optional<std::string> model, serial, processorBrand, memoryProfile;
        std::optional<PropertyValue::Data> boardID;
        std::optional<std::int64_t> processorHertz, memoryBytes;
        std::map<std::string, HardwareAddress, std::less<>> hardwareAddresses;
        SystemVersion version{10, 11, 0};
    };
    Answers answers;

    void setModelIdentifier(std::optional<std::string> model) { answers.model = std::move(model); }
    void setSystemVersion(SystemVersion version) noexcept { answers.version = version; }

    std::optional<std::string> modelIdentifier() const override { return answers.model; }
    std::optional<std::string> serialNumber() const override { return answers.serial; }
    std::optional<PropertyValue::Data> boardID() const override { return answers.boardID; }
    std::optional<std::string> processorBrand() const override { return answers.processorBrand; }
    std::optional<std::int64_t> processorHertz() const override { return answers.processorHertz; }
    std::optional<std::int64_t> memoryBytes() const override { return answers.memoryBytes; }
    std::optional<std::string> memoryProfile() const override { return answers.memoryProfile; }
    std::optional<HardwareAddress> hardwareAddress(std::string_view interface) const override {
        const auto found = answers.hardwareAddresses.find(interface);
        return found == answers.hardwareAddresses.end() ? std::nullopt
                                                        : std::optional(found->second);
    }
    SystemVersion systemVersion() const noexcept override { return answers.version; }
};

/// The settings that go with a language tag, such as "en_US" or "ja_JP".
class SimulatedRegionalSettings final : public RegionalSettings {
public:
    void setLocale(std::string tag) { tag_ = std::move(tag); }
    bool usesMetricSystem() const override;
    std::string shortTimeFormat() const override;
    std::vector<std::string> preferredLanguages() const override { return {tag_}; }
    std::string dateText(double localSeconds, std::string_view pattern,
                         const std::optional<std::string>& locale) const override {
        return writer_ ? writer_(localSeconds, pattern, locale.value_or(tag_)) : "";
    }
    /// Who knows the words of all languages; without one a date is "".
    using DateWriter = std::function<std::string(double, std::string_view, const std::string&)>;
    void setDateWriter(DateWriter writer) { writer_ = std::move(writer); }

private:
    DateWriter writer_;
    std::string tag_ = "en_US";
};

class SimulatedTimeZone final : public TimeZone {
public:
    /// GMT until then.
    void setRules(TimeZoneRules rules) { rules_ = std::move(rules); }
    std::int32_t secondsFromGMT(double time) const noexcept override {
        return rules_.secondsFromGMT(static_cast<std::int64_t>(std::floor(time)));
    }

private:
    TimeZoneRules rules_;
};

class SimulatedThisProcess final : public ThisProcess {
public:
    std::string name() const override { return "vantorbar"; }
    std::uint32_t threadID() const noexcept override { return 1; }
    std::string threadName() const override { return "main"; }
};

class SimulatedCallStack final : public CallStack {
public:
    std::string symbols() const override { return "0   simulated"; }
};

}  // namespace vantor::simulated
