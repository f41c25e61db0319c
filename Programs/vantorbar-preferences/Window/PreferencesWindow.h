#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/ItemPreview.h"
#include "Programs/vantorbar-preferences/Model/PreferencesModel.h"
#include "Programs/vantorbar-preferences/Window/Widgets.h"

namespace vantor {

class AboutPage;
class HistoryPage;
class ModesList;
class PreviewStrip;
class SettingRows;

/// The window: a list of pages at the left, the item as it comes out above the page that is open.
/// Pages are made when they are first opened.
/// Thread: main. Model and preview outlive it. Closing the window is told to `closed`, which may
/// end this.
class PreferencesWindow {
public:
    PreferencesWindow(GtkApplication* application, PreferencesModel& model, ItemPreview& preview,
                      std::filesystem::path historyFolder, PageID first);
    ~PreferencesWindow();
    PreferencesWindow(const PreferencesWindow&) = delete;
    PreferencesWindow& operator=(const PreferencesWindow&) = delete;

    GtkWindow* window() const noexcept { return GTK_WINDOW(window_); }
    PageID page() const noexcept { return page_; }
    void openPage(PageID page);

private:
    static constexpr std::size_t kPages = 10;
    struct Page;

    void addHeader();
    GtkWidget* newSidebar();
    GtkWidget* newContent();
    void addToast(GtkWidget* overlay);
    Page& madePage(PageID id);
    void fillPage(Page& page, GtkWidget* column, WidgetMaker& make);
    void addReset(Page& page, GtkWidget* column, WidgetMaker& make);
    void reset(Page& page);
    void changed(std::string_view key);
    void tell(const std::string& line, std::vector<FormerSetting> former = {});
    void hideToast() noexcept;
    void stepPage(int step);

    static gboolean rowReached(GtkWidget* row, gboolean, gpointer self) noexcept;
    static void rowSelected(GtkListBox*, GtkListBoxRow* row, gpointer self) noexcept;
    static gboolean keyPressed(GtkWidget*, GdkEventKey* event, gpointer self) noexcept;

    PreferencesModel& model_;
    ItemPreview& preview_;
    std::filesystem::path historyFolder_;
    PageID page_;
    Mnemonics mnemonics_;  // those of the list of pages
    GtkWidget *window_, *sidebar_ = nullptr, *stack_ = nullptr, *strip_ = nullptr;
    GtkWidget *toast_ = nullptr, *toastText_ = nullptr, *undo_ = nullptr;
    std::unique_ptr<PreviewStrip> previewStrip_;
    std::array<std::unique_ptr<Page>, kPages> pages_;
    std::vector<FormerSetting> undoable_;
    guint toastClock_ = 0;
    Observation changes_;
};

/// The window's colours and distances, for the whole program.
void loadStyle();

}  // namespace vantor
