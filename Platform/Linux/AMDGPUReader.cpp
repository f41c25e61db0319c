#include "Platform/Linux/AMDGPUReader.h"

#include "Platform/Linux/DeviceFiles.h"

namespace vantor {

AMDGPUReader::AMDGPUReader(DeviceFiles& files, const std::string& folder, Memory memory)
    : files_(files), busy_(folder + "/gpu_busy_percent"),
      vramTotal_(folder + "/mem_info_vram_total"), vramUsed_(folder + "/mem_info_vram_used"),
      gttTotal_(folder + "/mem_info_gtt_total"), gttUsed_(folder + "/mem_info_gtt_used"),
      memory_(memory) {}

GPUFigures AMDGPUReader::read(double) {
    if (!totals_.memoryTotal)
        totals_.memoryTotal = files_.count(vramTotal_);
    GPUFigures figures = totals_;
    figures.memoryUsed = files_.count(vramUsed_);
    if (memory_ == Memory::shared) {
        if (!totals_.sharedTotal)
            figures.sharedTotal = totals_.sharedTotal = files_.count(gttTotal_);
        figures.sharedUsed = files_.count(gttUsed_);
    }
    const auto busy = files_.count(busy_);
    if (busy && *busy <= 100)
        figures.load = static_cast<double>(*busy);
    return figures;
}

}  // namespace vantor
