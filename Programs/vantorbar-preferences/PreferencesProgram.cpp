#include "Programs/vantorbar-preferences/PreferencesProgram.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Directories.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/Common/SettingStore.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "com.kolbrin.vantorbar.preferences";

GApplicationFlags uniqueness() {
    const bool hasBus = sessionBusAddress(processEnvironment()).has_value();
    return hasBus ? G_APPLICATION_DEFAULT_FLAGS : G_APPLICATION_NON_UNIQUE;
}

fs::path historyFolder(const Directories& directories) {
    const auto data = directories.applicationSupport();
    return data ? *data / "Vantor Bar/databases" : fs::path();
}

}  // namespace

PreferencesProgram::PreferencesProgram()
    : platform_(programDirectories()),
      stored_(LinuxPreferenceDomain::extrasFile(platform_.ports().directories),
              platform_.ports().systemLog, platform_.ports().clock),
      application_(gtk_application_new(kName, uniqueness())),
      loop_(G_APPLICATION(application_.get()), platform_.mainQueue()) {
    g_application_set_default(G_APPLICATION(application_.get()));
    g_signal_connect_swapped(application_.get(), "activate",
                             G_CALLBACK(+[](PreferencesProgram* self) { self->open(); }), this);
}

PreferencesProgram::~PreferencesProgram() {
    if (waitingLanguage_ != 0)
        g_source_remove(waitingLanguage_);
}

int PreferencesProgram::run(int argc, char** argv) {
    return g_application_run(G_APPLICATION(application_.get()), argc, argv);
}

void PreferencesProgram::open() {
    if (window_ == nullptr) {
        const Ports ports = platform_.ports();
        migrate();
        model_ = std::make_unique<PreferencesModel>(stored_, VTRPreferences::defaultsFor(ports),
                                                    ports.distributedNotifications,
                                                    [this] { stored_.noteChanged(); });
        loadStyle();
        gtk_icon_theme_append_search_path(
            gtk_icon_theme_get_default(),
            (ports.directories.resources().parent_path() / "icons").c_str());
        makeWindow(PageID::menuBar);
        watchFile();
        changes_ = model_->observe([this](std::string_view key) {
            if (key == "language" && waitingLanguage_ == 0)
                speakAnotherLanguage();
        });
    }
    gtk_window_present(window_->window());
}

void PreferencesProgram::makeWindow(PageID first) {
    window_.reset();
    preview_.reset();
    const Ports ports = platform_.ports();
    preview_ = std::make_unique<ItemPreview>(PreviewMachine::of(ports), ports.regionalSettings,
                                             model_->stored());
    window_ = std::make_unique<PreferencesWindow>(application_.get(), *model_, *preview_,
                                                  historyFolder(ports.directories), first);
    g_signal_connect(window_->window(), "delete-event", G_CALLBACK(windowClosed), this);
}

/// Once for all programs: an item that is running may not write what it carries over.
void PreferencesProgram::migrate() {
    const ProcessContext context(platform_.ports());
    VTRPreferences* const preferences = VTRPreferences::sharedPreferences();
    if (carryOverFormerSettings(*preferences, platform_.ports().distributedNotifications).outcome ==
        PreferenceMigration::Outcome::carriedOver)
        stored_.noteChanged();
}

/// So that what others write shows without a bus, too.
void PreferencesProgram::watchFile() {
    const fs::path path = LinuxPreferenceDomain::extrasFile(platform_.ports().directories);
    GFile* const file = g_file_new_for_path(path.c_str());
    monitor_.reset(g_file_monitor_file(file, G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
    g_object_unref(file);
    if (monitor_ != nullptr)
        g_signal_connect(monitor_.get(), "changed", G_CALLBACK(fileChanged), this);
}

void PreferencesProgram::fileChanged(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent,
                                     gpointer self) noexcept {
    static_cast<PreferencesProgram*>(self)->model_->noteChanged();
}

/// The window is made anew, once whoever changed the language is done.
void PreferencesProgram::speakAnotherLanguage() {
    waitingLanguage_ = g_idle_add(
        [](gpointer data) -> gboolean {
            auto* const self = static_cast<PreferencesProgram*>(data);
            self->waitingLanguage_ = 0;
            self->makeWindow(self->window_->page());
            gtk_window_present(self->window_->window());
            return G_SOURCE_REMOVE;
        },
        this);
}

gboolean PreferencesProgram::windowClosed(GtkWidget*, GdkEvent*, gpointer self) noexcept {
    auto* const program = static_cast<PreferencesProgram*>(self);
    program->window_.reset();
    g_application_quit(G_APPLICATION(program->application_.get()));
    return TRUE;
}

}  // namespace vantor
