#pragma once

#include <functional>
#include <string>

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/HistoryKeeper.h"
#include "Programs/vantorbar-preferences/Window/Widgets.h"

namespace vantor {

/// Where the history is and how large, and what can be done with it.
/// Thread: main.
class HistoryPage {
public:
    /// `tell` shows a line to the user.
    HistoryPage(HistoryKeeper keeper, GtkWidget* column, WidgetMaker& make,
                std::function<void(const std::string&)> tell);
    HistoryPage(const HistoryPage&) = delete;
    HistoryPage& operator=(const HistoryPage&) = delete;

    /// As it is now.
    void show();

private:
    void openFolder();
    void askWhereTo();
    void exportTo(const std::string& folder);
    void askWhetherToClear();
    void clear();
    GtkWindow* window() const noexcept;

    HistoryKeeper keeper_;
    std::function<void(const std::string&)> tell_;
    GtkWidget *size_, *folderButton_, *exportButton_, *clearButton_;
};

}  // namespace vantor
