/* The panel's macro isn't C++. */
#include <libxfce4panel/libxfce4panel.h>

void vantor_construct(XfcePanelPlugin *plugin);

XFCE_PANEL_PLUGIN_REGISTER(vantor_construct)
