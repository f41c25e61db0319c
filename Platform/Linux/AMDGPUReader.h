#pragma once

#include <string>

#include "Platform/Linux/GPUFigures.h"

namespace vantor {

class DeviceFiles;

/// The figures that amdgpu has in sysfs. Shared memory is told of an integrated one only.
class AMDGPUReader final : public GPUReader {
public:
    enum class Memory { own, shared };

    AMDGPUReader(DeviceFiles& files, const std::string& folder, Memory memory);
    GPUFigures read(double now) override;

private:
    DeviceFiles& files_;
    std::string busy_, vramTotal_, vramUsed_, gttTotal_, gttUsed_;
    Memory memory_;
    GPUFigures totals_;  // they don't change
};

}  // namespace vantor
