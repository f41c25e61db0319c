// Read by the leak sanitizer where the program is built with it.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

/// Fontconfig keeps its patterns by offsets in place of pointers, which the sanitizer can't follow.
const char* __lsan_default_suppressions() { return "leak:libfontconfig.so"; }
