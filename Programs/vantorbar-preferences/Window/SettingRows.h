#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/PreferencesModel.h"
#include "Programs/vantorbar-preferences/Window/Widgets.h"

namespace vantor {

/// A setting in the window: what of its page may be without effect, and how it is brought up to
/// date.
struct ShownSetting {
    const SettingDescription* setting;
    std::vector<GtkWidget*> parts;
    std::function<void()> show;
};

/// The rows of settings. Whatever the user does in one goes through the model at once, but for
/// values that are dragged or typed, which wait until they rest.
/// Thread: main. The model outlives it, and it outlives the rows.
class SettingRows {
public:
    explicit SettingRows(PreferencesModel& model) noexcept;
    ~SettingRows();
    SettingRows(const SettingRows&) = delete;
    SettingRows& operator=(const SettingRows&) = delete;

    /// A row for each setting of the group, at the end of `column`; one with few choices that has a
    /// group to itself has a row for each choice.
    void add(const SettingGroup& group, GtkWidget* column, WidgetMaker& make);
    /// After the setting of that key, or with "" any, may have changed.
    void show(std::string_view key);

private:
    using Change = std::function<void()>;
    struct Waiting;

    void addFlag(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    void addNumber(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    void addFraction(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    void addChoice(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    void addColour(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    void addChoices(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    void addLanguages(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make);
    GtkWidget* addRadio(GtkWidget* first, const std::string& label, GtkWidget* list,
                        WidgetMaker& make, Change chosen);
    /// Runs `change`, unless it is the window itself that changes the widget.
    Change byUser(Change change);
    /// The same, but once nothing has changed for a moment.
    Change byUserAtRest(const SettingDescription& setting, Change change);
    bool isBeingChanged(std::string_view key) const noexcept;
    void finish(const SettingDescription& setting, std::vector<GtkWidget*> parts, Change show);
    void showOne(const ShownSetting& shown);

    PreferencesModel& model_;
    std::vector<ShownSetting> shown_;
    std::vector<std::unique_ptr<Waiting>> waiting_;
    bool isShowing_ = false;
};

}  // namespace vantor
