#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/vantorbar-preferences/Model/ItemPreview.h"
#include "Programs/vantorbar-preferences/Model/PreferencesModel.h"
#include "Programs/vantorbar-preferences/Window/GLibLoop.h"
#include "Programs/vantorbar-preferences/Window/PreferencesWindow.h"

namespace vantor {

/// The program: one window for all who start it, as long as there is a bus that tells them of each
/// other.
class PreferencesProgram {
public:
    PreferencesProgram();
    ~PreferencesProgram();
    PreferencesProgram(const PreferencesProgram&) = delete;
    PreferencesProgram& operator=(const PreferencesProgram&) = delete;

    /// Until the window is closed. Answers the exit status.
    int run(int argc, char** argv);

private:
    struct Unreference {
        void operator()(gpointer object) const noexcept { g_object_unref(object); }
    };
    using Application = std::unique_ptr<GtkApplication, Unreference>;

    void open();
    void makeWindow(PageID first);
    void migrate();
    void watchFile();
    void speakAnotherLanguage();
    static gboolean windowClosed(GtkWidget*, GdkEvent*, gpointer self) noexcept;
    static void fileChanged(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent,
                            gpointer self) noexcept;

    LinuxPlatform platform_;
    LinuxPreferenceDomain stored_;
    Application application_;
    GLibLoop loop_;
    std::unique_ptr<PreferencesModel> model_;
    std::unique_ptr<ItemPreview> preview_;
    std::unique_ptr<PreferencesWindow> window_;
    std::unique_ptr<GFileMonitor, Unreference> monitor_;
    Observation changes_;
    guint waitingLanguage_ = 0;
};

}  // namespace vantor
