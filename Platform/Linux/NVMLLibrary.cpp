#include "Platform/Linux/NVMLLibrary.h"

#include <dlfcn.h>

namespace vantor {
namespace {

// The library's own types, as far as they are needed: its results are numbers of which 0 is
// success, and its devices are handles.
using Result = int;
using Device = struct NVMLDevice*;
constexpr Result kSuccess = 0;

struct Memory {
    unsigned long long total, free, used;
};
struct Utilization {
    unsigned gpu, memory;  // percent
};

/// The newer name of a call first; older libraries have only the second.
template <class Call>
Call symbol(void* handle, const char* name, const char* olderName = nullptr) {
    void* found = dlsym(handle, name);
    if (found == nullptr && olderName != nullptr)
        found = dlsym(handle, olderName);
    return reinterpret_cast<Call>(found);
}

}  // namespace

struct NVMLLibrary::Calls {
    Result (*init)();
    Result (*shutdown)();
    Result (*handleByAddress)(const char* address, Device* device);
    Result (*memoryInfo)(Device device, Memory* memory);
    Result (*utilizationRates)(Device device, Utilization* rates);

    bool areThere() const noexcept {
        return init && shutdown && handleByAddress && memoryInfo && utilizationRates;
    }
};

NVMLLibrary::NVMLLibrary(void* handle, const Calls& calls)
    : handle_(handle), calls_(std::make_unique<Calls>(calls)) {}

NVMLLibrary::~NVMLLibrary() {
    end();
    dlclose(handle_);
}

std::unique_ptr<NVMLLibrary> NVMLLibrary::open(const std::string& file) {
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        return nullptr;
    const Calls calls{
        symbol<decltype(Calls::init)>(handle, "nvmlInit_v2", "nvmlInit"),
        symbol<decltype(Calls::shutdown)>(handle, "nvmlShutdown"),
        symbol<decltype(Calls::handleByAddress)>(handle, "nvmlDeviceGetHandleByPciBusId_v2",
                                                 "nvmlDeviceGetHandleByPciBusId"),
        symbol<decltype(Calls::memoryInfo)>(handle, "nvmlDeviceGetMemoryInfo"),
        symbol<decltype(Calls::utilizationRates)>(handle, "nvmlDeviceGetUtilizationRates")};
    if (!calls.areThere()) {
        dlclose(handle);
        return nullptr;
    }
    return std::unique_ptr<NVMLLibrary>(new NVMLLibrary(handle, calls));
}

bool NVMLLibrary::begin() {
    if (!isBegun_)
        isBegun_ = calls_->init() == kSuccess;
    return isBegun_;
}

void NVMLLibrary::end() {
    if (isBegun_)
        calls_->shutdown();  // whatever it answers, it isn't used any more
    isBegun_ = false;
}

std::optional<GPUFigures> NVMLLibrary::read(const char* address) {
    Device device{};
    if (!isBegun_ || calls_->handleByAddress(address, &device) != kSuccess)
        return std::nullopt;
    GPUFigures figures;
    Memory memory{};
    if (calls_->memoryInfo(device, &memory) == kSuccess && memory.used <= memory.total) {
        figures.memoryTotal = memory.total;
        figures.memoryUsed = memory.used;
    }
    Utilization rates{};
    if (calls_->utilizationRates(device, &rates) == kSuccess && rates.gpu <= 100)
        figures.load = rates.gpu;
    if (!figures.memoryTotal && !figures.load)
        return std::nullopt;
    return figures;
}

}  // namespace vantor
