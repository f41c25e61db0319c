#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Linux/GPUFigures.h"

namespace vantor {

/// The management library of NVIDIA's driver, opened at run time. Its calls may take long, or
/// never return.
/// Thread: one at a time.
class NVMLLibrary {
public:
    /// Null where it isn't installed, or lacks what is asked of it.
    static std::unique_ptr<NVMLLibrary> open(const std::string& file);
    ~NVMLLibrary();
    NVMLLibrary(const NVMLLibrary&) = delete;
    NVMLLibrary& operator=(const NVMLLibrary&) = delete;

    /// Attaches to all graphics processors, which wakes them. False where the library refuses.
    [[nodiscard]] bool begin();
    /// Lets go of them.
    void end();
    /// What it says of the one at that PCI address; nothing where it doesn't know it or fails.
    std::optional<GPUFigures> read(const char* address);

private:
    struct Calls;
    NVMLLibrary(void* handle, const Calls& calls);

    void* handle_;
    std::unique_ptr<Calls> calls_;
    bool isBegun_ = false;
};

}  // namespace vantor
