#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Shared/Collectors/StatCollectorDelegate.h"
#include "Shared/VTRMenu.h"
#include "Shared/Views/VTRMenuExtraContentView.h"

namespace vantor::inline VANTOR_MODULE {

/// Who is told of a module's updates; the first one is its extra.
class VTRModuleDelegate {
public:
    virtual ~VTRModuleDelegate() = default;
    /// The figures changed: show them.
    virtual void update() = 0;
    virtual void updateSize() = 0;
    virtual bool isCombinedExtra() const = 0;
};

/// The unit of function inside an extra: it owns a menu and is the delegate of its collectors.
/// Most operations do nothing here, on purpose, so that an extra can send every message to every
/// module and a concrete module overrides only what it uses.
/// Thread: main queue.
class VTRModule : public VTRMenuDelegate, public StatCollectorDelegate {
public:
    explicit VTRModule(VTRModuleDelegate& extra);
    ~VTRModule() override;
    VTRModule(const VTRModule&) = delete;
    VTRModule& operator=(const VTRModule&) = delete;

    virtual std::string moduleName() const { return ""; }
    virtual VTRMenu* menu() { return menu_.get(); }
    /// What a combined dropdown shows of the module, or null.
    virtual std::shared_ptr<VTRMenuItem> combinedItem() const { return nullptr; }
    virtual void display() {}
    virtual void menuOpened() {}
    virtual void cleanup() {}
    virtual void update() {}
    /// Starts the module: returns at once, work that takes time goes on elsewhere.
    virtual void setup() {}
    virtual void loadNotifications() {}
    virtual bool prepareDatabase() { return false; }
    virtual void rebuildMenu() {}
    virtual void themeChange() {}
    virtual void menubarThemeChanged();
    virtual void globalPreferencesChange(const Notification&) {}
    virtual void menuChange(const Notification&) {}
    virtual void skinTypeChange(const Notification&) {}
    virtual void skinChange(const Notification&) {}
    virtual void displayChange(const Notification&) {}
    virtual void textAttributeChange(const Notification&) {}
    virtual void partialUnload() {}
    virtual void willUnload() {}

    void addDelegate(VTRModuleDelegate& delegate);
    void removeDelegate(VTRModuleDelegate& delegate) noexcept;
    const std::vector<VTRModuleDelegate*>& delegates() const noexcept { return delegates_; }

    /// What the module shows in the bar, or null.
    VTRMenuExtraContentView* view() const noexcept { return view_.get(); }
    void setView(std::unique_ptr<VTRMenuExtraContentView> view) { view_ = std::move(view); }
    double width() const noexcept { return view_ ? view_->size() : 0; }

    int key() const noexcept { return key_; }
    void setKey(int key) noexcept { key_ = key; }
    bool menubar() const noexcept { return menubar_; }
    void setMenubar(bool menubar) noexcept { menubar_ = menubar; }
    bool isSetup() const noexcept { return isSetup_; }
    void setIsSetup(bool isSetup) noexcept { isSetup_ = isSetup; }

    /// The file of a database of that name; nothing where the user has no place for it. Makes
    /// the directory. A combined extra's files are others than a stand-alone one's.
    static std::optional<std::filesystem::path> databasePath(std::string_view name,
                                                             const VTRModuleDelegate* extra);
    std::optional<std::filesystem::path> databasePath(std::string_view name) const;

    /// By the preference "TimerFrequency": every tick, every second or every third one. The last
    /// tick of the start-up count, -1, always measures.
    std::optional<bool> collectorShouldUpdateStateForSequence(StatCollector& collector,
                                                              int sequence) override;
    void collectorUpdatedForMode(StatCollector&, int) override {}

    void menuWillOpen(VTRMenu&) override {}
    void menuDidClose(VTRMenu&) override {}

protected:
    void removeAllDelegates() noexcept { delegates_.clear(); }

private:
    bool menubar_ = false, isSetup_ = false;
    int key_ = 0;
    std::vector<VTRModuleDelegate*> delegates_;
    std::unique_ptr<VTRMenu> menu_;
    std::unique_ptr<VTRMenuExtraContentView> view_;
};

}  // namespace vantor::inline VANTOR_MODULE
