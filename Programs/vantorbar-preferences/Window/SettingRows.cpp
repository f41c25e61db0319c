#include "Programs/vantorbar-preferences/Window/SettingRows.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Programs/Common/SettingValue.h"

namespace vantor {
namespace {

constexpr guint kRestMilliseconds = 150;
constexpr int kScaleWidth = 180, kComboWidth = 130;

GdkRGBA rgbaOf(const Colour& colour) noexcept {
    return {colour.red, colour.green, colour.blue, colour.alpha};
}

Colour colourOf(const GdkRGBA& rgba) noexcept {
    return {rgba.red, rgba.green, rgba.blue, rgba.alpha};
}

std::string helpOf(const SettingDescription& setting) {
    return setting.help.empty() ? "" : text(setting.help);
}

gchar* percentText(GtkScale*, gdouble value, gpointer) noexcept {
    return g_strdup_printf("%.0f %%", value);  // a whole number has no decimal separator
}

}  // namespace

/// A change that waits until its widget rests. What waits at the end is made then.
struct SettingRows::Waiting {
    Waiting(std::string_view ofKey, Change what) : key(ofKey), change(std::move(what)) {}
    ~Waiting() {
        if (timer != 0)
            make();
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    void begin() {
        if (timer != 0)
            g_source_remove(timer);
        timer = g_timeout_add(kRestMilliseconds, rested, this);
    }
    void make() {
        g_source_remove(std::exchange(timer, 0));
        change();
    }
    static gboolean rested(gpointer self) noexcept {
        static_cast<Waiting*>(self)->timer = 0;
        static_cast<Waiting*>(self)->change();
        return G_SOURCE_REMOVE;
    }

    std::string_view key;
    Change change;
    guint timer = 0;
};

SettingRows::SettingRows(PreferencesModel& model) noexcept : model_(model) {}
SettingRows::~SettingRows() = default;

SettingRows::Change SettingRows::byUser(Change change) {
    return [this, made = std::move(change)] {
        if (!isShowing_)
            made();
    };
}

SettingRows::Change SettingRows::byUserAtRest(const SettingDescription& setting, Change change) {
    waiting_.push_back(std::make_unique<Waiting>(setting.key, std::move(change)));
    return byUser([waiting = waiting_.back().get()] { waiting->begin(); });
}

void SettingRows::add(const SettingGroup& group, GtkWidget* column, WidgetMaker& make) {
    GtkWidget* const list = make.addGroup(column, group.title.empty() ? "" : text(group.title));
    const bool isAlone = group.settings.size() == 1;
    for (const SettingDescription& setting : group.settings) {
        switch (setting.kind) {
        case SettingKind::flag:
            addFlag(setting, list, make);
            break;
        case SettingKind::number:
            addNumber(setting, list, make);
            break;
        case SettingKind::fraction:
            addFraction(setting, list, make);
            break;
        case SettingKind::choice:
            (this->*(isAlone ? &SettingRows::addChoices : &SettingRows::addChoice))(setting, list,
                                                                                    make);
            break;
        case SettingKind::colour:
            addColour(setting, list, make);
            break;
        case SettingKind::language:
            addLanguages(setting, list, make);
            break;
        case SettingKind::modes:  // a page of its own
            break;
        }
    }
}

void SettingRows::finish(const SettingDescription& setting, std::vector<GtkWidget*> parts,
                         Change show) {
    for (GtkWidget* const part : parts) {
        gtk_widget_show_all(part);
        gtk_widget_set_no_show_all(part, TRUE);  // whether it is shown is its setting's affair
    }
    shown_.push_back({&setting, std::move(parts), std::move(show)});
    showOne(shown_.back());
}

bool SettingRows::isBeingChanged(std::string_view key) const noexcept {
    return std::ranges::any_of(waiting_, [key](const auto& waiting) {
        return waiting->key == key && waiting->timer != 0;
    });
}

void SettingRows::showOne(const ShownSetting& shown) {
    // What is being dragged stays at the pointer: it's stored in a moment.
    if (!isBeingChanged(shown.setting->key)) {
        const bool was = std::exchange(isShowing_, true);
        shown.show();
        isShowing_ = was;
    }
    const bool isEffective = model_.isEffective(*shown.setting);
    const bool isShown = model_.isShown(*shown.setting);
    for (GtkWidget* const part : shown.parts) {
        gtk_widget_set_sensitive(part, isEffective);
        gtk_widget_set_visible(part, isShown);
    }
}

void SettingRows::show(std::string_view key) {
    const auto needs = [key](const SettingDescription& setting) {
        return std::ranges::find(setting.needs, key, &SettingNeed::key) != setting.needs.end();
    };
    for (const ShownSetting& shown : shown_)
        if (key.empty() || shown.setting->key == key || needs(*shown.setting))
            showOne(shown);
}

void SettingRows::addFlag(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make) {
    GtkWidget* const control = gtk_switch_new();
    GtkWidget* const row = make.addRow(list, text(setting.label), helpOf(setting), control);
    onSignal(control, "notify::active", byUser([this, &setting, control] {
                 model_.setFlag(setting.key, gtk_switch_get_active(GTK_SWITCH(control)) != FALSE);
             }));
    finish(setting, {row}, [this, &setting, control] {
        gtk_switch_set_active(GTK_SWITCH(control), model_.flag(setting.key));
    });
}

void SettingRows::addNumber(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make) {
    const UsualRange usual = usualRange(setting.key);
    GtkWidget* const control = gtk_spin_button_new_with_range(usual.from, usual.to, 1);
    passWheelOn(control);
    GtkWidget* const row = make.addRow(list, text(setting.label), helpOf(setting), control);
    onSignal(control, "value-changed", byUserAtRest(setting, [this, &setting, control] {
                 model_.setInteger(setting.key,
                                   gtk_spin_button_get_value_as_int(GTK_SPIN_BUTTON(control)));
             }));
    finish(setting, {row}, [this, &setting, control, usual] {
        // What somebody stored elsewhere is shown as it is, even where it is unusual.
        const double value = model_.number(setting.key);
        gtk_spin_button_set_range(GTK_SPIN_BUTTON(control), std::min(usual.from, value),
                                  std::max(usual.to, value));
        gtk_spin_button_set_value(GTK_SPIN_BUTTON(control), value);
    });
}

void SettingRows::addFraction(const SettingDescription& setting, GtkWidget* list,
                              WidgetMaker& make) {
    GtkWidget* const control = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 100, 1);
    gtk_widget_set_size_request(control, kScaleWidth, -1);
    gtk_scale_set_value_pos(GTK_SCALE(control), GTK_POS_LEFT);
    g_signal_connect(control, "format-value", G_CALLBACK(percentText), nullptr);
    passWheelOn(control);
    GtkWidget* const row = make.addRow(list, text(setting.label), helpOf(setting), control);
    onSignal(control, "value-changed", byUserAtRest(setting, [this, &setting, control] {
                 model_.setNumber(setting.key,
                                  std::round(gtk_range_get_value(GTK_RANGE(control))) / 100);
             }));
    finish(setting, {row}, [this, &setting, control] {
        gtk_range_set_value(GTK_RANGE(control), 100 * model_.number(setting.key));
    });
}

void SettingRows::addChoice(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make) {
    GtkWidget* const control = gtk_combo_box_text_new();
    gtk_widget_set_size_request(control, kComboWidth, -1);
    passWheelOn(control);
    for (const SettingChoice& choice : setting.choices)
        gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(control), text(choice.label).c_str());
    GtkWidget* const row = make.addRow(list, text(setting.label), helpOf(setting), control);
    onSignal(control, "changed", byUser([this, &setting, control] {
                 const int place = gtk_combo_box_get_active(GTK_COMBO_BOX(control));
                 if (place >= 0)
                     model_.setInteger(setting.key,
                                       setting.choices[static_cast<std::size_t>(place)].value);
             }));
    finish(setting, {row}, [this, &setting, control] {
        const auto choice =
            std::ranges::find(setting.choices, model_.integer(setting.key), &SettingChoice::value);
        const bool isKnown = choice != setting.choices.end();
        gtk_combo_box_set_active(GTK_COMBO_BOX(control),
                                 isKnown ? static_cast<int>(choice - setting.choices.begin()) : -1);
    });
}

void SettingRows::addColour(const SettingDescription& setting, GtkWidget* list, WidgetMaker& make) {
    GtkWidget* const control = gtk_color_button_new();
    gtk_color_button_set_title(GTK_COLOR_BUTTON(control), text(setting.label).c_str());
    gtk_color_chooser_set_use_alpha(GTK_COLOR_CHOOSER(control), TRUE);
    GtkWidget* const row = make.addRow(list, text(setting.label), helpOf(setting), control);
    onSignal(control, "color-set", byUser([this, &setting, control] {
                 GdkRGBA rgba;
                 gtk_color_chooser_get_rgba(GTK_COLOR_CHOOSER(control), &rgba);
                 model_.setColour(setting.key, colourOf(rgba));
             }));
    finish(setting, {row}, [this, &setting, control] {
        const GdkRGBA rgba = rgbaOf(model_.colour(setting.key));
        gtk_color_chooser_set_rgba(GTK_COLOR_CHOOSER(control), &rgba);
    });
}

GtkWidget* SettingRows::addRadio(GtkWidget* first, const std::string& label, GtkWidget* list,
                                 WidgetMaker& make, Change chosen) {
    GtkWidget* const radio = gtk_radio_button_new_with_mnemonic_from_widget(
        first == nullptr ? nullptr : GTK_RADIO_BUTTON(first), make.marked(label).c_str());
    addClass(radio, "radio-row");
    GtkWidget* const row = gtk_list_box_row_new();
    gtk_container_add(GTK_CONTAINER(row), radio);
    gtk_widget_set_can_focus(row, FALSE);
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
    gtk_list_box_insert(GTK_LIST_BOX(list), row, -1);
    onSignal(radio, "toggled", byUser([radio, made = std::move(chosen)] {
                 if (gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(radio)) != FALSE)
                     made();
             }));
    return radio;
}

void SettingRows::addChoices(const SettingDescription& setting, GtkWidget* list,
                             WidgetMaker& make) {
    std::vector<GtkWidget*> radios;
    for (const SettingChoice& choice : setting.choices)
        radios.push_back(
            addRadio(radios.empty() ? nullptr : radios.front(), text(choice.label), list, make,
                     [this, &setting, &choice] { model_.setInteger(setting.key, choice.value); }));
    finish(setting, radios, [this, &setting, radios] {
        for (std::size_t place = 0; place < radios.size(); ++place)
            if (setting.choices[place].value == model_.integer(setting.key))
                gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(radios[place]), TRUE);
    });
}

void SettingRows::addLanguages(const SettingDescription& setting, GtkWidget* list,
                               WidgetMaker& make) {
    std::vector<GtkWidget*> radios{
        addRadio(nullptr, text("As the desktop has it"), list, make,
                 [this, &setting] { model_.setValue(setting.key, {}); })};
    for (const LanguageDescription& language : languageDescriptions())
        radios.push_back(
            addRadio(radios.front(), std::string(language.name), list, make,
                     [this, &setting, &language] { model_.setValue(setting.key, language.tag); }));
    finish(setting, radios, [this, &setting, radios] {
        const auto languages = languageDescriptions();
        const auto chosen =
            std::ranges::find(languages, model_.text(setting.key), &LanguageDescription::tag);
        const auto place = chosen == languages.end() ? 0 : chosen - languages.begin() + 1;
        gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(radios[static_cast<std::size_t>(place)]),
                                     TRUE);
    });
}

}  // namespace vantor
