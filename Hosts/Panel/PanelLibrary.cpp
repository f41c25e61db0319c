#include "Hosts/Panel/PanelLibrary.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>
#include <glib.h>

#include "Foundation/OwnFile.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFile = "libvantor-panel.so";

const VantorPanel* open(const fs::path& file) {
    void* const object = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const entry = object != nullptr ? dlsym(object, VANTOR_PANEL_ENTRY) : nullptr;
    return entry != nullptr ? reinterpret_cast<VantorPanelEntry>(entry)() : nullptr;
}

const VantorPanel* find() {
    std::error_code none;
    const fs::path plugin = fs::weakly_canonical(ownFile(), none);  // panels may know it by a link
    for (const fs::path& folder : {plugin.parent_path(), fs::path(VANTOR_PRIVATE_LIBRARY_DIR)})
        if (const VantorPanel* const panel = open(folder / kFile))
            return panel;
    g_warning("vantorbar: %s", dlerror());
    return nullptr;
}

}  // namespace

const VantorPanel* panelLibrary() {
    static const VantorPanel* const panel = find();
    return panel;
}

}  // namespace vantor
