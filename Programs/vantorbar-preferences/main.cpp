#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <system_error>

#include <gtk/gtk.h>

#include "Platform/Linux/LinuxBuses.h"
#include "Programs/vantorbar-preferences/PreferencesProgram.h"

namespace {

/// Without assistive technology at work GTK would start its bus for nothing.
bool isAccessibilityRunning() {
    if (std::getenv("AT_SPI_BUS_ADDRESS") != nullptr)
        return true;
    std::error_code none;
    return std::filesystem::exists(std::filesystem::path(g_get_user_runtime_dir()) / "at-spi",
                                   none);
}

/// Before anything of GTK runs.
void prepareToolkit() {
    if (!isAccessibilityRunning())
        g_setenv("NO_AT_BRIDGE", "1", FALSE);
    // Nobody is to start a bus for us.
    if (!vantor::sessionBusAddress(vantor::processEnvironment()))
        g_setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", TRUE);
    // Looking for screens to draw three-dimensional things on would load 50 MiB of drivers.
    g_setenv("GDK_GL", "disable", FALSE);
    // Numbers are read and written without a locale; the toolkit's own words have one.
    gtk_disable_setlocale();
    std::setlocale(LC_CTYPE, "");
    std::setlocale(LC_MESSAGES, "");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        prepareToolkit();
        return vantor::PreferencesProgram().run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantorbar-preferences: %s\n", error.what());
        return 1;
    }
}
