// Read by the sanitizers where a program is built with them: what libraries do that isn't ours.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_options();
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();

/// What a program of ours writes is looked at by tests.
const char* __lsan_default_options() { return "print_suppressions=0"; }

/// Fontconfig keeps its patterns by offsets in place of pointers, which the sanitizer can't follow.
const char* __lsan_default_suppressions() { return "leak:libfontconfig.so"; }

/// Pango looks for fonts on a thread of its own and hands over by locks of GLib, which the
/// sanitizer doesn't see: those libraries aren't built with it.
const char* __tsan_default_suppressions() {
    return "called_from_lib:libfontconfig.so\n"
           "called_from_lib:libpango-1.0.so\n"
           "called_from_lib:libpangoft2-1.0.so\n"
           "called_from_lib:libpangocairo-1.0.so\n"
           "called_from_lib:libglib-2.0.so\n"
           "race:libfontconfig.so\n"
           "race:libpango\n";
}
