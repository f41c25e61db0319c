#include "Shared/VTRMenuExtra.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <utility>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include "Foundation/LetterCase.h"
#include "Platform/CallStack.h"
#include "Platform/Clock.h"
#include "Platform/Directories.h"
#include "Platform/DistributedNotifications.h"
#include "Platform/SystemLog.h"
#include "Platform/Witness.h"
#include "Shared/External/Logging/LGFileLogger.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/External/Logging/LGLogFileManagerDefault.h"
#include "Shared/InstalledApplications.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRMenuHighlight.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/VTRPreferences.h"
#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kFirstLength = 20;
constexpr double kBarHeight = 22;

void sayThatNothingIsEnabled(VTRMenu& menu) {
    const auto filler = [&](int height) {
        menu.addItem(createFillerItem(nullptr, "", VTRMakeSize(260, height)));
    };
    const auto line = [&](std::string_view text) {
        menu.addItem(createCenteredLabel(VTRLocalizedString(text, {}, "combined"), 260, 15));
    };
    filler(7);
    line("No dropdown items enabled");
    filler(6);
    line("Please enable some dropdown items in the");
    line("combined tab in the Vantor Bar app");
    filler(7);
}

constexpr double kLogRollingFrequencySeconds = 2'592'000;
constexpr std::uint64_t kMaximumNumberOfLogFiles = 7, kMaximumLogFileBytes = 5'242'880;

std::string dateDescription(double secondsSince1970) {
    const auto seconds = static_cast<std::time_t>(secondsSince1970);
    return fmt::format("{:%Y-%m-%d %H:%M:%S} +0000", fmt::gmtime(seconds));
}

}  // namespace

VTRMenuExtra::VTRMenuExtra(MenuExtraHost& host)
    : ports_(ProcessContext::current().ports()), host_(host) {
    host_.setViewFrameSize({kFirstLength, kBarHeight});
    host_.setLength(kFirstLength);
    ports_.mainQueue.after(0, [extra = self_.handle()] {
        if (VTRMenuExtra* const self = extra.get())
            self->run();
    });
}

VTRMenuExtra::~VTRMenuExtra() = default;

/// Not in the constructor: until it has returned, the extra has no name. A user who has no place
/// for logs gets none.
void VTRMenuExtra::setupLog() {
    const auto logs = ports_.directories.logs();
    if (!logs)
        return;
    LGLog& log = LGLog::sharedLog();
    const auto manager = std::make_shared<LGLogFileManagerDefault>(log, *logs / extraName());
    fileLogger_ = std::make_shared<LGFileLogger>(log, manager);
    fileLogger_->setRollingFrequency(kLogRollingFrequencySeconds);
    manager->setMaximumNumberOfLogFiles(kMaximumNumberOfLogFiles);
    fileLogger_->setMaximumFileSize(kMaximumLogFileBytes);
    log.addLogger(fileLogger_);
}

void VTRMenuExtra::run() {
    if (state_ != State::constructed)
        return;  // unloaded before it began
    state_ = State::loading;
    setupLog();
    modules_ = std::make_unique<Modules>();
    combinedMenu_ = createMenu();
    combinedMenu_->setDelegate(this);
    std::string stage = "initial load";
    ports_.systemLog.write(fmt::format("Vantor Bar loading extra - {}", extraName()));
    try {
        startModules(stage);
    } catch (const std::exception& exception) {
        reportFailure(exception.what(), stage);
        return;
    } catch (...) {
        reportFailure("unknown exception", stage);
        return;
    }
    registerObservers();
    if (isCombinedExtra())
        rebuildCombinedMenu();
    state_ = State::loaded;
    if (ports_.witness != nullptr)
        ports_.witness->extraLoaded(extraName());
}

/// An item that changes its width leaves the bar for a moment: hosts lay it out anew then.
void VTRMenuExtra::loadView() {
    view_ = std::make_unique<VTRMenuExtraView>(host_, *this);
    view_->setZero(true);
    host_.setNeedsDisplay();  // the view is installed
    view_->setDraw(true);
    view_->setLastSize(0);
}

void VTRMenuExtra::disableZero() {
    if (view_)
        view_->setZero(false);
    update();
}

void VTRMenuExtra::startModules(std::string& stage) {
    stage = "loading base view";
    loadView();
    stage = "loading modules";
    loadModules();
    for (std::size_t index = 0; !isCombinedExtra() && index < modules_->size(); ++index) {
        VTRModule& module = *(*modules_)[index];
        stage = fmt::format("setup module at index - {}", index);
        module.setup();
        stage = fmt::format("notifictions module at index - {}", index);
        module.loadNotifications();
        module.setMenubar(true);
    }
    stage = "modules loaded";
}

void VTRMenuExtra::registerObservers() {
    VTRPreferences::sharedPreferences();  // which tells of theme changes from its making on
    displayChange_ = ports_.distributedNotifications.observe(
        "VantorBarGlobalDisplayChange",
        [this](const Notification& notification) { displayChange(notification); });
    menubarThemeChanged_ = ports_.localNotifications.observe(
        "VantorBarMenubarThemeChanged", [this](const Notification&) { menubarThemeChanged(); });
    if (isCombinedExtra())
        combinedDisplayChange_ = ports_.distributedNotifications.observe(
            "VantorBarCombinedDisplayChange",
            [this](const Notification& notification) { reloadModules(notification); });
}

void VTRMenuExtra::reportFailure(std::string_view exception, std::string_view stage) {
    const auto line = [this](std::string_view what) {
        return fmt::format("Vantor Bar exception in {} - {}", extraName(), what);
    };
    const std::string report =
        fmt::format("{}\n\n{}\n{}\n\n{}", dateDescription(ports_.clock.now()), line(exception),
                    line(stage), ports_.callStack.symbols());
    ports_.systemLog.write(report);
    LGLogInfo(report);
    host_.setViewFrameSize({0, kBarHeight});
    host_.setLength(0);
    willUnload();
}

VTRMenu* VTRMenuExtra::menu() {
    if (isCombinedExtra())
        return combinedMenu_.get();
    return modules_ && modules_->size() == 1 ? modules_->front()->menu() : nullptr;
}

VTRModule* VTRMenuExtra::moduleWithKey(int key) const noexcept {
    if (!modules_)
        return nullptr;
    const auto module = std::ranges::find(*modules_, key, [](auto& each) { return each->key(); });
    return module == modules_->end() ? nullptr : module->get();
}

void VTRMenuExtra::menuWillOpen(VTRMenu& menu) {
    menu.setVisible(true);
    ports_.localNotifications.post("VTRMenuStateChanged");
}

void VTRMenuExtra::menuDidClose(VTRMenu& menu) {
    menu.setVisible(false);
    ports_.localNotifications.post("VTRMenuStateChanged");
    menuWillHighlightItem(menu, nullptr);
}

void VTRMenuExtra::menuWillHighlightItem(VTRMenu& menu, VTRMenuItem* item) {
    highlightRow(menu, item);
}

void VTRMenuExtra::rebuildCombinedMenu() {
    combinedMenu_->removeAllItems();
    combinedMenu_->addItem(
        createFillerItem(combinedMenu_.get(), "filler-top", VTRMakeSize(225, 3)));
    const PropertyValue keys = VTRObjectForKey("CombinedDropdownDisplayMode");
    LGLogInfo(fmt::format("Dropdown keys - {}", keys ? keys.stringValue() : "(null)"));
    if (keys)  // nothing has no keys, where an empty text has one
        addCombinedSections(keys.stringValue());
    if (combinedMenu_->itemArray().size() == 1)
        sayThatNothingIsEnabled(*combinedMenu_);
}

void VTRMenuExtra::addCombinedSections(std::string_view keys) {
    for (std::size_t begin = 0; begin <= keys.size();) {
        const std::size_t end = std::min(keys.find(',', begin), keys.size());
        addCombinedSection(keys.substr(begin, end - begin));
        begin = end + 1;
    }
}

void VTRMenuExtra::addCombinedSection(std::string_view key) {
    VTRModule* const module = moduleWithKey(static_cast<int>(PropertyValue(key).integerValue()));
    if (module == nullptr) {
        LGLogInfo(fmt::format("Module is missing - '{}'", key));
        return;
    }
    LGLogInfo(fmt::format("Adding module - '{}'", key));
    const std::string title = VTRLocalizedString(upperCased(module->moduleName()), {}, "combined");
    combinedMenu_->addItem(createHeaderItem(nullptr, "", title, 225));
    if (const std::shared_ptr<VTRMenuItem> item = module->combinedItem())
        combinedMenu_->addItem(item);
}

void VTRMenuExtra::update() { host_.setNeedsDisplay(); }

void VTRMenuExtra::tellThemeChange() {
    ports_.localNotifications.post("DropdownThemeChanged");
    for (const auto& module : *modules_)
        module->themeChange();
}

void VTRMenuExtra::menubarThemeChanged() {
    for (const auto& module : *modules_)
        module->menubarThemeChanged();
    update();
    if (VTRBoolForKey("Theme-SeperateStyles"))
        tellThemeChange();
}

void VTRMenuExtra::displayChange(const Notification& notification) {
    VTRRefreshKey(infoValue(notification.info, "key"));
    for (const auto& module : *modules_)
        module->skinChange(notification);
    const std::string_view resetKey = infoValue(notification.info, "resetKey");
    if (resetKey == "dropdown" || resetKey == "styles")
        tellThemeChange();
    if (resetKey == "launcher")
        for (const auto& module : *modules_)
            module->rebuildMenu();
    for (const auto& module : *modules_)
        module->globalPreferencesChange(notification);
    update();
}

void VTRMenuExtra::unloadModules() noexcept {
    if (!modules_)
        return;
    try {
        for (const auto& module : *modules_) {
            ports_.systemLog.write("unloading module");
            module->willUnload();
        }
    } catch (...) {  // the rest of the unloading still takes place
    }
}

void VTRMenuExtra::willUnload() {
    if (state_ == State::unloaded)
        return;
    LGLogInfo("Unloading...");
    unloadModules();
    modules_.reset();
    cleanup();
    combinedMenu_.reset();
    displayChange_.end();
    menubarThemeChanged_.end();
    combinedDisplayChange_.end();
    state_ = State::unloaded;
    ports_.distributedNotifications.post("VantorBarUnloadedExtra",
                                         {{"extra", std::string(extraName())}});
    host_.willUnload();
    if (ports_.witness != nullptr)
        ports_.witness->extraUnloaded(extraName());
}

std::optional<std::filesystem::path> VTRMenuExtra::currentAppLocation() {
    const Directories& directories = ProcessContext::current().ports().directories;
    return newestInstalledApplication(directories.systemRoot() / "Applications");
}

}  // namespace vantor::inline VANTOR_MODULE
