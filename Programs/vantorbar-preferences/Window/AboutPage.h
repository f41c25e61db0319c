#pragma once

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/ProgramUsage.h"
#include "Programs/vantorbar-preferences/Window/Widgets.h"

namespace vantor {

/// Which program this is, and what it and the running item cost. Looks again every two seconds
/// while it is shown.
/// Thread: main.
class AboutPage {
public:
    AboutPage(GtkWidget* column, WidgetMaker& make);
    ~AboutPage();
    AboutPage(const AboutPage&) = delete;
    AboutPage& operator=(const AboutPage&) = delete;

private:
    void show();
    static void shown(GtkWidget*, gpointer self) noexcept;
    static void hidden(GtkWidget*, gpointer self) noexcept;

    GtkWidget *column_, *item_, *window_;
    guint clock_ = 0;
};

}  // namespace vantor
