#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Foundation/NotificationCenter.h"
#include "Foundation/WeakHandle.h"
#include "Platform/MainQueue.h"
#include "Platform/MenuExtraHost.h"
#include "Platform/Ports.h"
#include "Shared/MenuExtra.h"
#include "Shared/VTRMenu.h"
#include "Shared/VTRModule.h"
#include "Shared/Views/VTRMenuExtraView.h"

namespace vantor::inline VANTOR_MODULE {

class LGFileLogger;

/// The plug-in object: it starts its modules in stages, forwards notifications to them, hands
/// the host the right menu, and tears everything down. A concrete extra names itself and makes
/// its modules.
/// Errors: what is thrown while the modules start is reported, the item leaves the bar and the
///         extra unloads itself; the process goes on.
/// Thread: main queue.
class VTRMenuExtra : public MenuExtra, public VTRModuleDelegate, public VTRMenuDelegate {
public:
    /// constructed -> loading -> loaded -> unloaded; a failure goes from loading to unloaded.
    enum class State { constructed, loading, loaded, unloaded };

    /// Takes the place that `host` gives; the rest happens when the main queue runs next, after
    /// the host has finished installing the item. The host outlives the extra.
    explicit VTRMenuExtra(MenuExtraHost& host);
    ~VTRMenuExtra() override;
    VTRMenuExtra(const VTRMenuExtra&) = delete;
    VTRMenuExtra& operator=(const VTRMenuExtra&) = delete;

    virtual std::string_view extraName() const { return ""; }
    bool isCombinedExtra() const override { return false; }
    virtual void loadModules() {}
    virtual void cleanup() {}
    virtual void heartbeat() {}
    void updateSize() override {}
    virtual void cancelTracking() {}
    virtual void menuChange(const Notification&) {}
    virtual void skinChange(const Notification&) {}
    virtual void reloadModules(const Notification&) {}

    /// The combined menu, or the menu of the one module; null for any other number of modules.
    VTRMenu* menu() override;
    VTRMenuExtraView* view() override { return view_.get(); }
    void willUnload() override;
    const Modules* modules() const override { return modules_.get(); }
    VTRModule* moduleWithKey(int key) const noexcept;
    VTRMenu* combinedMenu() const noexcept { return combinedMenu_.get(); }
    State state() const noexcept { return state_; }

    void menuWillOpen(VTRMenu& menu) override;
    void menuDidClose(VTRMenu& menu) override;
    void menuWillHighlightItem(VTRMenu& menu, VTRMenuItem* item) override;

    /// Asks the host to show the item anew.
    void update() override;

    void menubarThemeChanged();
    /// From now on a change of width doesn't take the item out of the bar.
    void disableZero();
    /// The sections of the modules that the user wants in a combined dropdown, in that order.
    void rebuildCombinedMenu();
    void displayChange(const Notification& notification);

    /// The newest installed copy of the application that owns this extra, or nothing.
    static std::optional<std::filesystem::path> currentAppLocation();

protected:
    Modules& mutableModules() noexcept { return *modules_; }
    MenuExtraHost& host() noexcept { return host_; }
    const Ports& ports() const noexcept { return ports_; }

private:
    void run();
    void addCombinedSections(std::string_view keys);
    void addCombinedSection(std::string_view key);
    void setupLog();
    void loadView();
    void startModules(std::string& stage);
    void registerObservers();
    void reportFailure(std::string_view exception, std::string_view stage);
    void unloadModules() noexcept;
    void tellThemeChange();

    Ports ports_;
    MenuExtraHost& host_;
    State state_ = State::constructed;
    std::shared_ptr<LGFileLogger> fileLogger_;  // the log's, too, which keeps it to its own end
    std::unique_ptr<Modules> modules_;
    std::unique_ptr<VTRMenu> combinedMenu_;
    std::unique_ptr<VTRMenuExtraView> view_;
    Observation displayChange_, menubarThemeChanged_, combinedDisplayChange_;
    WeakSource<VTRMenuExtra> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
