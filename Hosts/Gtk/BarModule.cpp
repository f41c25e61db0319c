#include "Hosts/Gtk/BarModule.h"

#include <filesystem>
#include <string>
#include <system_error>

#include <dlfcn.h>

#include "Hosts/Gtk/BarToolkit.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFile = "libvantor-gtk.so";

struct OpenedModule {
    OpenedModule() {
        std::error_code none;
        const fs::path program = fs::read_symlink("/proc/self/exe", none);
        // Beside the program, or else where its run path and the system's folders say.
        if (open((program.parent_path() / kFile).c_str()) || open(kFile))
            trouble.clear();
    }

    bool open(const char* file) {
        void* const object = dlopen(file, RTLD_NOW | RTLD_LOCAL);
        void* const entry = object != nullptr ? dlsym(object, kBarToolkitEntry) : nullptr;
        if (entry != nullptr)
            toolkit = reinterpret_cast<BarToolkitEntry>(entry)();
        else if (const char* const why = dlerror(); why != nullptr && trouble.empty())
            trouble = why;
        return entry != nullptr;
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
