#pragma once

#include <filesystem>
#include <string>

namespace vantor {

/// The program or the plug-in that this code is part of; empty where the system doesn't tell.
std::filesystem::path ownFile();

/// What a shared object of ours gives.
struct OwnModule {
    void* entry = nullptr;  // null where there is trouble
    std::string trouble;    // why, in the words of the system; else empty
};

/// Opens `file` from beside this code, as in a build folder, or else from where its run path and
/// the system's folders say. It is never closed: what it registers can't be registered twice.
OwnModule openOwnModule(const char* file, const char* entryName);

}  // namespace vantor
