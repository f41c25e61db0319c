#include "Programs/vantorbar-preferences/Window/Widgets.h"

#include <utility>

#include "Shared/VTRTranslations.h"

namespace vantor {
namespace {

constexpr int kMostLetters = 52;  // in a line of the widest text

using Callback = std::function<void()>;

void callBack(Callback* callback) noexcept { (*callback)(); }

void dropCallback(gpointer callback, GClosure*) noexcept {
    delete static_cast<Callback*>(callback);
}

gboolean wheelTurned(GtkWidget* widget, GdkEvent*, gpointer) noexcept {
    g_signal_stop_emission_by_name(widget, "scroll-event");
    return FALSE;
}

}  // namespace

std::string text(std::string_view key) {
    return VTRLocalizedString(key, std::nullopt, "preferences");
}

void onSignal(gpointer object, const char* signal, Callback callback) {
    g_signal_connect_data(object, signal, G_CALLBACK(callBack), new Callback(std::move(callback)),
                          dropCallback, G_CONNECT_SWAPPED);
}

GtkWidget* newColumn(int spacing) { return gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing); }
GtkWidget* newLine(int spacing) { return gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing); }

GtkWidget* newText(const std::string& text, const char* styleClass) {
    GtkWidget* const label = gtk_label_new(text.c_str());
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_max_width_chars(GTK_LABEL(label), kMostLetters);
    if (styleClass != nullptr)
        addClass(label, styleClass);
    return label;
}

void addClass(GtkWidget* widget, const char* styleClass) {
    gtk_style_context_add_class(gtk_widget_get_style_context(widget), styleClass);
}

void setSpokenName(GtkWidget* widget, const std::string& name, const std::string& help) {
    AtkObject* const spoken = gtk_widget_get_accessible(widget);
    atk_object_set_name(spoken, name.c_str());
    if (!help.empty())
        atk_object_set_description(spoken, help.c_str());
}

guint heldModifiers(const GdkEventKey& event) noexcept {
    return event.state & (GDK_CONTROL_MASK | GDK_SHIFT_MASK | GDK_MOD1_MASK);
}

void passWheelOn(GtkWidget* widget) {
    g_signal_connect(widget, "scroll-event", G_CALLBACK(wheelTurned), nullptr);
}

GtkWidget* WidgetMaker::addGroup(GtkWidget* column, const std::string& title) {
    GtkWidget* const list = gtk_list_box_new();
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(list), GTK_SELECTION_NONE);
    addClass(list, "settings");
    if (!title.empty()) {
        gtk_container_add(GTK_CONTAINER(column), newText(title, "group-title"));
        setSpokenName(list, title);
    }
    gtk_container_add(GTK_CONTAINER(column), list);
    return list;
}

GtkWidget* WidgetMaker::addRow(GtkWidget* list, const std::string& label, const std::string& help,
                               GtkWidget* control) {
    GtkWidget* const name = newText("");
    gtk_label_set_text_with_mnemonic(GTK_LABEL(name), marked(label).c_str());
    gtk_label_set_mnemonic_widget(GTK_LABEL(name), control);
    GtkWidget* const words = newColumn(2);
    gtk_widget_set_valign(words, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(words), name);
    if (!help.empty())
        gtk_container_add(GTK_CONTAINER(words), newText(help, "help"));
    GtkWidget* const line = newLine(18);
    gtk_box_pack_start(GTK_BOX(line), words, TRUE, TRUE, 0);
    gtk_box_pack_end(GTK_BOX(line), control, FALSE, FALSE, 0);
    gtk_widget_set_valign(control, GTK_ALIGN_CENTER);
    GtkWidget* const row = gtk_list_box_row_new();
    gtk_container_add(GTK_CONTAINER(row), line);
    gtk_widget_set_can_focus(row, FALSE);
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
    gtk_list_box_insert(GTK_LIST_BOX(list), row, -1);
    setSpokenName(control, label, help);
    return row;
}

GtkWidget* WidgetMaker::button(const std::string& label) {
    return gtk_button_new_with_mnemonic(marked(label).c_str());
}

}  // namespace vantor
