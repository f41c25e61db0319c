#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/Mnemonics.h"

namespace vantor {

/// The user's words for a text of this program, which is its key.
std::string text(std::string_view key);

/// Calls back whenever the object tells of that, for as long as it lives. Only for signals that
/// want no answer.
void onSignal(gpointer object, const char* signal, std::function<void()> callback);

/// Who makes the widgets of one part of the window: the letters that its labels are reached by
/// differ from each other.
class WidgetMaker {
public:
    explicit WidgetMaker(Mnemonics mnemonics) : mnemonics_(std::move(mnemonics)) {}

    std::string marked(std::string_view label) { return mnemonics_.mark(label); }
    const Mnemonics& mnemonics() const noexcept { return mnemonics_; }

    /// A list in a frame, with a title above it unless that is "". Answers the list; it is in
    /// `column`.
    GtkWidget* addGroup(GtkWidget* column, const std::string& title);
    /// A row of `list`: a label, a line of help below it unless that is "", and at the end the
    /// control that the label's letter leads to.
    GtkWidget* addRow(GtkWidget* list, const std::string& label, const std::string& help,
                      GtkWidget* control);
    GtkWidget* button(const std::string& label);

private:
    Mnemonics mnemonics_;
};

GtkWidget* newColumn(int spacing);
GtkWidget* newLine(int spacing);
/// Text that breaks its lines, at the left.
GtkWidget* newText(const std::string& text, const char* styleClass = nullptr);
void addClass(GtkWidget* widget, const char* styleClass);
/// What a screen reader says of a widget.
void setSpokenName(GtkWidget* widget, const std::string& name, const std::string& help = "");
/// Which of Control, Shift and Alt are held: the rest is the keyboard's affair.
guint heldModifiers(const GdkEventKey& event) noexcept;
/// A wheel that turns over the widget moves what is around it, and doesn't change a value that
/// nobody meant.
void passWheelOn(GtkWidget* widget);

}  // namespace vantor
