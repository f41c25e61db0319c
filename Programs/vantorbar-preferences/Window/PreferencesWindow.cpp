#include "Programs/vantorbar-preferences/Window/PreferencesWindow.h"

#include <algorithm>
#include <utility>

#include "Programs/vantorbar-preferences/Window/AboutPage.h"
#include "Programs/vantorbar-preferences/Window/HistoryPage.h"
#include "Programs/vantorbar-preferences/Window/ModesList.h"
#include "Programs/vantorbar-preferences/Window/PreviewStrip.h"
#include "Programs/vantorbar-preferences/Window/SettingRows.h"

namespace vantor {
namespace {

constexpr int kWidth = 800, kHeight = 690, kColumnWidth = 584, kSidebarWidth = 180;
constexpr guint kToastSeconds = 8;

std::string nameOf(PageID page) { return std::to_string(static_cast<int>(page)); }

/// What needs a word beside its rows.
std::string introductionTo(PageID page) {
    switch (page) {
    case PageID::menuBar:
        return text("Tick what the item shows, and drag it into order.");
    case PageID::language:
        return text("The item speaks another language once it is started again.");
    default:
        return "";
    }
}

}  // namespace

struct PreferencesWindow::Page {
    const SettingsPage* description = nullptr;
    std::unique_ptr<SettingRows> rows;
    std::unique_ptr<ModesList> modes;
    std::unique_ptr<HistoryPage> history;
    std::unique_ptr<AboutPage> about;
    GtkWidget* reset = nullptr;
};

PreferencesWindow::PreferencesWindow(GtkApplication* application, PreferencesModel& model,
                                     ItemPreview& preview, std::filesystem::path historyFolder,
                                     PageID first)
    : model_(model), preview_(preview), historyFolder_(std::move(historyFolder)), page_(first),
      window_(gtk_application_window_new(application)) {
    gtk_window_set_default_size(window(), kWidth, kHeight);
    gtk_window_set_icon_name(window(), "vantor-bar-cpu");
    addHeader();
    GtkWidget* const line = newLine(0);
    gtk_container_add(GTK_CONTAINER(line), newSidebar());
    gtk_container_add(GTK_CONTAINER(line), gtk_separator_new(GTK_ORIENTATION_VERTICAL));
    gtk_box_pack_start(GTK_BOX(line), newContent(), TRUE, TRUE, 0);
    gtk_container_add(GTK_CONTAINER(window_), line);
    g_signal_connect(window_, "key-press-event", G_CALLBACK(keyPressed), this);
    changes_ = model_.observe([this](std::string_view key) { changed(key); });
    gtk_widget_show_all(line);
    openPage(first);
}

PreferencesWindow::~PreferencesWindow() {
    hideToast();
    g_signal_handlers_disconnect_by_data(window_, this);
    g_signal_handlers_disconnect_by_data(sidebar_, this);
    pages_ = {};
    previewStrip_.reset();
    gtk_widget_destroy(window_);
}

void PreferencesWindow::addHeader() {
    const std::string title = text("Vantor Bar CPU Preferences");
    GtkWidget* const header = gtk_header_bar_new();
    gtk_header_bar_set_show_close_button(GTK_HEADER_BAR(header), TRUE);
    gtk_header_bar_set_title(GTK_HEADER_BAR(header), title.c_str());
    gtk_window_set_titlebar(window(), header);
    gtk_window_set_title(window(), title.c_str());
    gtk_widget_show(header);
}

GtkWidget* PreferencesWindow::newSidebar() {
    sidebar_ = gtk_list_box_new();
    addClass(sidebar_, "pages");
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(sidebar_), GTK_SELECTION_BROWSE);
    gtk_widget_set_size_request(sidebar_, kSidebarWidth, -1);
    setSpokenName(sidebar_, text("Pages"));
    for (const SettingsPage& page : settingsPages()) {
        GtkWidget* const row = gtk_list_box_row_new();
        GtkWidget* const name = newText("");
        gtk_label_set_text_with_mnemonic(GTK_LABEL(name),
                                         mnemonics_.mark(text(page.title)).c_str());
        gtk_label_set_mnemonic_widget(GTK_LABEL(name), row);
        gtk_container_add(GTK_CONTAINER(row), name);
        setSpokenName(row, text(page.title));
        gtk_list_box_insert(GTK_LIST_BOX(sidebar_), row, -1);
        g_signal_connect(row, "mnemonic-activate", G_CALLBACK(rowReached), this);
    }
    g_signal_connect(sidebar_, "row-selected", G_CALLBACK(rowSelected), this);
    return sidebar_;
}

GtkWidget* PreferencesWindow::newContent() {
    GtkWidget* const column = newColumn(0);
    gtk_widget_set_size_request(column, kColumnWidth, -1);
    gtk_widget_set_halign(column, GTK_ALIGN_CENTER);
    previewStrip_ = std::make_unique<PreviewStrip>(preview_);
    strip_ = previewStrip_->widget();
    addClass(strip_, "strip");
    gtk_container_add(GTK_CONTAINER(column), strip_);
    stack_ = gtk_stack_new();
    gtk_box_pack_start(GTK_BOX(column), stack_, TRUE, TRUE, 0);
    GtkWidget* const overlay = gtk_overlay_new();
    gtk_container_add(GTK_CONTAINER(overlay), column);
    addToast(overlay);
    return overlay;
}

void PreferencesWindow::addToast(GtkWidget* overlay) {
    toastText_ = newText("");
    undo_ = gtk_button_new_with_mnemonic(mnemonics_.mark(text("Undo")).c_str());
    onSignal(undo_, "clicked", [this] {
        model_.restore(std::exchange(undoable_, {}));
        hideToast();
    });
    GtkWidget* const line = newLine(18);
    addClass(line, "toast");
    gtk_container_add(GTK_CONTAINER(line), toastText_);
    gtk_container_add(GTK_CONTAINER(line), undo_);
    toast_ = gtk_revealer_new();
    gtk_revealer_set_transition_type(GTK_REVEALER(toast_), GTK_REVEALER_TRANSITION_TYPE_SLIDE_UP);
    gtk_container_add(GTK_CONTAINER(toast_), line);
    gtk_widget_set_halign(toast_, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(toast_, GTK_ALIGN_END);
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), toast_);
}

void PreferencesWindow::tell(const std::string& line, std::vector<FormerSetting> former) {
    hideToast();
    undoable_ = std::move(former);
    gtk_label_set_text(GTK_LABEL(toastText_), line.c_str());
    gtk_widget_set_visible(undo_, !undoable_.empty());
    gtk_revealer_set_reveal_child(GTK_REVEALER(toast_), TRUE);
    toastClock_ = g_timeout_add_seconds(
        kToastSeconds,
        [](gpointer self) -> gboolean {
            static_cast<PreferencesWindow*>(self)->toastClock_ = 0;
            static_cast<PreferencesWindow*>(self)->hideToast();
            return G_SOURCE_REMOVE;
        },
        this);
}

void PreferencesWindow::hideToast() noexcept {
    if (const guint clock = std::exchange(toastClock_, 0); clock != 0)
        g_source_remove(clock);
    gtk_revealer_set_reveal_child(GTK_REVEALER(toast_), FALSE);
}

PreferencesWindow::Page& PreferencesWindow::madePage(PageID id) {
    std::unique_ptr<Page>& page = pages_[static_cast<std::size_t>(id)];
    if (page != nullptr)
        return *page;
    page = std::make_unique<Page>();
    page->description = &settingsPage(id);
    GtkWidget* const column = newColumn(12);
    addClass(column, "page");
    GtkWidget* const scroller = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER,
                                   GTK_POLICY_AUTOMATIC);
    gtk_container_add(GTK_CONTAINER(scroller), column);
    WidgetMaker make(mnemonics_);
    fillPage(*page, column, make);
    gtk_widget_show_all(scroller);
    gtk_stack_add_named(GTK_STACK(stack_), scroller, nameOf(id).c_str());
    return *page;
}

void PreferencesWindow::fillPage(Page& page, GtkWidget* column, WidgetMaker& make) {
    const PageID id = page.description->id;
    if (const std::string words = introductionTo(id); !words.empty())
        gtk_container_add(GTK_CONTAINER(column), newText(words, "introduction"));
    if (id == PageID::history)
        page.history =
            std::make_unique<HistoryPage>(HistoryKeeper(historyFolder_), column, make,
                                          [this](const std::string& line) { tell(line); });
    else if (id == PageID::about)
        page.about = std::make_unique<AboutPage>(column, make);
    if (page.description->groups.empty())
        return;
    addReset(page, column, make);
    if (id == PageID::menuBar) {
        page.modes = std::make_unique<ModesList>(model_, preview_, column, make);
    } else {
        page.rows = std::make_unique<SettingRows>(model_);
        for (const SettingGroup& group : page.description->groups)
            page.rows->add(group, column, make);
    }
    gtk_box_reorder_child(GTK_BOX(column), page.reset, -1);
}

void PreferencesWindow::addReset(Page& page, GtkWidget* column, WidgetMaker& make) {
    page.reset = make.button(text("Reset to Defaults"));
    gtk_widget_set_halign(page.reset, GTK_ALIGN_END);
    gtk_widget_set_margin_top(page.reset, 6);
    gtk_widget_set_sensitive(page.reset, !model_.isAtDefaults(*page.description));
    onSignal(page.reset, "clicked", [this, &page] { reset(page); });
    gtk_container_add(GTK_CONTAINER(column), page.reset);
}

void PreferencesWindow::reset(Page& page) {
    std::vector<FormerSetting> former = model_.reset(*page.description);
    if (model_.failure().empty())
        tell(text("This page is as it was at first."), std::move(former));
}

void PreferencesWindow::changed(std::string_view key) {
    if (key.empty())
        preview_.setSettings(model_.stored());
    else
        preview_.setSetting(key, model_.stored()[std::string(key)]);
    previewStrip_->repaint();
    for (const auto& page : pages_) {
        if (page == nullptr)
            continue;
        if (page->rows)
            page->rows->show(key);
        if (page->modes)
            page->modes->show(key);
        if (page->reset != nullptr)
            gtk_widget_set_sensitive(page->reset, !model_.isAtDefaults(*page->description));
    }
    if (!model_.failure().empty())
        tell(text("It can't be stored:") + " " + model_.failure());
}

void PreferencesWindow::openPage(PageID id) {
    page_ = id;
    Page& page = madePage(id);
    gtk_stack_set_visible_child_name(GTK_STACK(stack_), nameOf(id).c_str());
    gtk_widget_set_visible(strip_, page.description->showsItem);
    if (page.history)
        page.history->show();
    GtkListBox* const list = GTK_LIST_BOX(sidebar_);
    GtkListBoxRow* const row = gtk_list_box_get_row_at_index(list, static_cast<int>(id));
    if (gtk_list_box_get_selected_row(list) != row)
        gtk_list_box_select_row(list, row);
}

gboolean PreferencesWindow::rowReached(GtkWidget* row, gboolean, gpointer self) noexcept {
    GtkWidget* const list = static_cast<PreferencesWindow*>(self)->sidebar_;
    gtk_list_box_select_row(GTK_LIST_BOX(list), GTK_LIST_BOX_ROW(row));
    gtk_widget_grab_focus(row);
    return TRUE;
}

void PreferencesWindow::rowSelected(GtkListBox*, GtkListBoxRow* row, gpointer self) noexcept {
    auto* const window = static_cast<PreferencesWindow*>(self);
    if (row == nullptr)
        return;
    const auto page = static_cast<PageID>(gtk_list_box_row_get_index(row));
    if (page != window->page_)
        window->openPage(page);
}

void PreferencesWindow::stepPage(int step) {
    const int count = static_cast<int>(kPages);
    openPage(static_cast<PageID>((static_cast<int>(page_) + step + count) % count));
    gtk_widget_grab_focus(GTK_WIDGET(gtk_list_box_get_selected_row(GTK_LIST_BOX(sidebar_))));
}

gboolean PreferencesWindow::keyPressed(GtkWidget*, GdkEventKey* event, gpointer self) noexcept {
    auto* const window = static_cast<PreferencesWindow*>(self);
    if (heldModifiers(*event) != GDK_CONTROL_MASK)
        return FALSE;
    switch (event->keyval) {
    case GDK_KEY_Page_Down:
        window->stepPage(1);
        return TRUE;
    case GDK_KEY_Page_Up:
        window->stepPage(-1);
        return TRUE;
    case GDK_KEY_w:
    case GDK_KEY_q:
        gtk_window_close(window->window());
        return TRUE;
    default:
        return FALSE;
    }
}

}  // namespace vantor
