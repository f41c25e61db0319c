#include "Programs/vantorbar-preferences/Window/HistoryPage.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "Shared/VTRFormatters.h"

namespace vantor {
namespace {

using Done = std::function<void(GtkWidget* dialog)>;

void answered(GtkWidget* dialog, int answer, gpointer done) noexcept {
    if (answer == GTK_RESPONSE_ACCEPT)
        (*static_cast<Done*>(done))(dialog);
    gtk_widget_destroy(dialog);
}

void dropDone(gpointer done, GClosure*) noexcept { delete static_cast<Done*>(done); }

/// Shows the dialog, tells `done` if it was answered with yes, and ends it.
void ask(GtkWidget* dialog, Done done) {
    g_signal_connect_data(dialog, "response", G_CALLBACK(answered), new Done(std::move(done)),
                          dropDone, GConnectFlags{});
    gtk_widget_show(dialog);
}

}  // namespace

HistoryPage::HistoryPage(HistoryKeeper keeper, GtkWidget* column, WidgetMaker& make,
                         std::function<void(const std::string&)> tell)
    : keeper_(std::move(keeper)), tell_(std::move(tell)), size_(newText("")),
      folderButton_(make.button(text("Open Folder"))), exportButton_(make.button(text("Export…"))),
      clearButton_(make.button(text("Clear…"))) {
    GtkWidget* const list = make.addGroup(column, text("What was measured"));
    make.addRow(list, text("Size"), text("The last hour, 24 hours and 7 days"), size_);
    make.addRow(list, text("Folder"), keeper_.folder().string(), folderButton_);
    GtkWidget* const actions = make.addGroup(column, "");
    make.addRow(actions, text("Save a copy"), text("As tables that other programs read"),
                exportButton_);
    make.addRow(actions, text("Begin anew"), text("Empties all graphs of the time gone by"),
                clearButton_);
    addClass(clearButton_, "destructive-action");
    onSignal(folderButton_, "clicked", [this] { openFolder(); });
    onSignal(exportButton_, "clicked", [this] { askWhereTo(); });
    onSignal(clearButton_, "clicked", [this] { askWhetherToClear(); });
    show();
}

GtkWindow* HistoryPage::window() const noexcept {
    return GTK_WINDOW(gtk_widget_get_toplevel(clearButton_));
}

void HistoryPage::show() {
    const HistoryFacts facts = keeper_.facts();
    const auto kilobytes = static_cast<double>(facts.bytes) / 1024;
    gtk_label_set_text(GTK_LABEL(size_), facts.files == 0 ? text("None yet").c_str()
                                                          : formattedMemory(kilobytes).c_str());
    std::error_code none;
    gtk_widget_set_sensitive(folderButton_, std::filesystem::is_directory(keeper_.folder(), none));
    gtk_widget_set_sensitive(exportButton_, facts.files > 0);
    gtk_widget_set_sensitive(clearButton_, facts.files > 0);
}

void HistoryPage::openFolder() {
    gchar* const address = g_filename_to_uri(keeper_.folder().c_str(), nullptr, nullptr);
    GError* error = nullptr;
    if (address != nullptr &&
        gtk_show_uri_on_window(window(), address, GDK_CURRENT_TIME, &error) == FALSE)
        tell_(error->message);
    g_clear_error(&error);
    g_free(address);
}

void HistoryPage::askWhereTo() {
    GtkWidget* const dialog = gtk_file_chooser_dialog_new(
        text("Save a copy").c_str(), window(), GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER,
        text("Cancel").c_str(), GTK_RESPONSE_CANCEL, text("Save Here").c_str(), GTK_RESPONSE_ACCEPT,
        nullptr);
    gtk_window_set_modal(GTK_WINDOW(dialog), TRUE);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
    ask(dialog, [this](GtkWidget* chooser) {
        gchar* const folder = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(chooser));
        if (folder != nullptr)
            exportTo(folder);
        g_free(folder);
    });
}

void HistoryPage::exportTo(const std::string& folder) {
    const HistoryKeeper::Complaints complaints = keeper_.exportTo(folder);
    tell_(complaints.empty() ? text("The copy is saved.") : complaints.front());
}

void HistoryPage::askWhetherToClear() {
    GtkWidget* const dialog =
        gtk_message_dialog_new(window(), GTK_DIALOG_MODAL, GTK_MESSAGE_WARNING, GTK_BUTTONS_NONE,
                               "%s", text("Clear the whole history?").c_str());
    gtk_message_dialog_format_secondary_text(
        GTK_MESSAGE_DIALOG(dialog), "%s",
        text("The graphs of the last hour, 24 hours and 7 days become empty, for good. An item "
             "that is running goes on measuring; what it remembers stays in its graphs until it "
             "is started again.")
            .c_str());
    gtk_dialog_add_button(GTK_DIALOG(dialog), text("Cancel").c_str(), GTK_RESPONSE_CANCEL);
    GtkWidget* const yes =
        gtk_dialog_add_button(GTK_DIALOG(dialog), text("Clear").c_str(), GTK_RESPONSE_ACCEPT);
    addClass(yes, "destructive-action");
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_CANCEL);
    ask(dialog, [this](GtkWidget*) { clear(); });
}

void HistoryPage::clear() {
    const HistoryKeeper::Complaints complaints = keeper_.clear();
    show();
    tell_(complaints.empty() ? text("The history is cleared.") : complaints.front());
}

}  // namespace vantor
