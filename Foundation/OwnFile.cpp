#include "Foundation/OwnFile.h"

#include <system_error>

#include <dlfcn.h>
#include <link.h>

namespace vantor {

namespace fs = std::filesystem;

fs::path ownFile() {
    static const char inside = 0;
    Dl_info info{};
    void* extra = nullptr;
    std::error_code none;
    if (dladdr1(&inside, &info, &extra, RTLD_DL_LINKMAP) != 0)
        if (const auto* const object = static_cast<const link_map*>(extra); *object->l_name != 0)
            return object->l_name;
    return fs::read_symlink("/proc/self/exe", none);  // the program itself has no name there
}

}  // namespace vantor
