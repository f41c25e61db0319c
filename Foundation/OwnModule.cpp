#include "Foundation/OwnModule.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>

#include "Foundation/OwnFile.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

OwnModule opened(const char* file, const char* entryName) {
    void* const object = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    void* const entry = object != nullptr ? dlsym(object, entryName) : nullptr;
    if (entry != nullptr)
        return {entry, ""};
    const char* const why = dlerror();
    return {nullptr, why != nullptr ? why : "has no entry"};
}

}  // namespace

OwnModule openOwnModule(const char* file, const char* entryName) {
    const fs::path beside = ownFile().parent_path() / file;
    std::error_code unreadable;  // as good as missing
    if (!fs::exists(beside, unreadable))
        return opened(file, entryName);
    const OwnModule first = opened(beside.c_str(), entryName);
    const OwnModule second = first.entry != nullptr ? first : opened(file, entryName);
    return second.entry != nullptr ? second : first;
}

}  // namespace vantor
