#pragma once

#include <string>

namespace vantor {

/// What a shared object of ours gives.
struct OwnModule {
    void* entry = nullptr;  // null where there is trouble
    std::string trouble;    // why, in the words of the system; else empty
};

/// Opens `file` from beside this code, as in a build folder, or else from where its run path and
/// the system's folders say. It is never closed: what it registers can't be registered twice.
OwnModule openOwnModule(const char* file, const char* entryName);

}  // namespace vantor
