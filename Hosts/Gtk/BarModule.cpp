#include "Hosts/Gtk/BarModule.h"

#include <string>
#include <utility>

#include "Foundation/OwnModule.h"
#include "Hosts/Gtk/BarToolkit.h"

namespace vantor {
namespace {

constexpr const char* kFile = "libvantor-gtk.so";

struct OpenedModule {
    OpenedModule() {
        OwnModule module = openOwnModule(kFile, kBarToolkitEntry);
        trouble = std::move(module.trouble);
        if (module.entry != nullptr)
            toolkit = reinterpret_cast<BarToolkitEntry>(module.entry)();
    }

    BarToolkit* toolkit = nullptr;
    std::string trouble;
};

const OpenedModule& openedModule() {
    static const OpenedModule opened;
    return opened;
}

}  // namespace

BarToolkit* barToolkit() { return openedModule().toolkit; }

std::string_view barToolkitTrouble() { return openedModule().trouble; }

}  // namespace vantor
