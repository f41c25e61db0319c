#include "Programs/vantorbar-preferences/Window/PreferencesWindow.h"

namespace vantor {
namespace {

constexpr const char* kStyle = R"css(
.strip { padding: 18px 18px 0 18px; }
.page { padding: 18px 18px 24px 18px; }
.settings check, .settings radio { margin-right: 8px; }
.introduction { opacity: 0.75; }
.help { opacity: 0.6; font-size: 90%; }
.figure { font-feature-settings: "tnum"; }
.group-title { font-weight: bold; margin: 6px 0 0 2px; }
.program-name { font-weight: bold; font-size: 150%; }
.pages { background: none; padding: 8px; }
.pages row { padding: 9px 12px; border-radius: 6px; }
.settings { border: 1px solid alpha(@borders, 0.7); border-radius: 8px; }
.settings row { padding: 7px 12px; min-height: 30px; border-top: 1px solid alpha(@borders, 0.45); }
.settings row:first-child { border-top: none; border-radius: 8px 8px 0 0; }
.settings row:last-child { border-radius: 0 0 8px 8px; }
.settings row:only-child { border-radius: 8px; }
.settings row:hover { background: none; }
.mover { padding: 2px; min-width: 22px; min-height: 22px; opacity: 0.7; }
.mover:hover, .mover:focus { opacity: 1; }
.mover:disabled { opacity: 0.25; }
.toast { background: alpha(#202024, 0.93); color: white; border-radius: 8px; padding: 8px 16px;
         margin-bottom: 18px; }
.toast button { background: none; border: none; box-shadow: none; text-shadow: none;
                color: #8cc4ff; padding: 2px 6px; }
)css";

}  // namespace

void loadStyle() {
    GtkCssProvider* const provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, kStyle, -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(),
                                              GTK_STYLE_PROVIDER(provider),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
}

}  // namespace vantor
