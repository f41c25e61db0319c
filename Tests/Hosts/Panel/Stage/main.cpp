// Stands in for a bar that loads modules: vantor_panel_stage MODULE [CYCLES]
// Shows the module's item in a bar at the upper left of the X screen, or with CYCLES puts it in and
// takes it out so many times and prints what the process then holds: kilobytes, descriptors and
// threads, after a tenth of them and after all.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <dlfcn.h>
#include <gtk/gtk.h>

namespace {

namespace fs = std::filesystem;

constexpr int kWidth = 300, kHeight = 26;

struct Module {
    void* (*init)(GtkContainer*, const void*, std::size_t);
    void (*deinit)(void*);
};

template <class Function>
void find(void* object, const char* name, Function*& into) {
    into = reinterpret_cast<Function*>(dlsym(object, name));
    if (into == nullptr) {
        std::fprintf(stderr, "%s: %s\n", name, dlerror());
        std::exit(1);
    }
}

Module load(const char* file) {
    void* const object = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (object == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::exit(1);
    }
    Module module{};
    find(object, "wbcffi_init", module.init);
    find(object, "wbcffi_deinit", module.deinit);
    return module;
}

GtkContainer* makeBar() {
    GtkWidget* const window = gtk_window_new(GTK_WINDOW_POPUP);
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_widget_set_size_request(window, kWidth, kHeight);
    gtk_container_add(GTK_CONTAINER(window), box);
    gtk_widget_show_all(window);
    return GTK_CONTAINER(box);
}

std::ptrdiff_t countOf(const char* folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

void report() {
    std::string word, kilobytes;
    for (std::ifstream status("/proc/self/status"); status >> word;)
        if (word == "VmRSS:")
            status >> kilobytes;
    std::printf("%s %td %td\n", kilobytes.c_str(), countOf("/proc/self/fd"),
                countOf("/proc/self/task"));
    std::fflush(stdout);
}

void serve() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

void cycle(const Module& module, GtkContainer* bar, int count) {
    for (int done = 0; done < count; ++done) {
        void* const item = module.init(bar, nullptr, 0);
        serve();
        module.deinit(item);
        serve();
    }
}

}  // namespace

int main(int argc, char** argv) {
    gtk_init(&argc, &argv);
    if (argc < 2)
        return 2;
    const Module module = load(argv[1]);
    GtkContainer* const bar = makeBar();
    if (argc < 3) {
        module.init(bar, nullptr, 0);
        gtk_main();
    }
    const int cycles = argc < 3 ? 0 : std::atoi(argv[2]);
    for (const int count : {cycles / 10, cycles - cycles / 10}) {
        cycle(module, bar, count);
        report();
    }
    return 0;
}
