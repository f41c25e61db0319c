#include "Hosts/ItemHost.h"

#include <utility>

#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/ProcessContext.h"

namespace vantor {
namespace {

/// The ID of the newest sample of the processors, 0 before the first.
double newestSampleID() noexcept {
    const CPUStatCollector* collector = ProcessContext::current().existingCPUCollector();
    return collector == nullptr ? 0 : collector->sampleAtIndex(0, StorageType::now).sampleID;
}

}  // namespace

void ItemHost::displayIfNeeded() {
    if (!std::exchange(needsDisplay_, false))
        return;
    const double sampleID = newestSampleID();
    const bool isNew = std::exchange(lastSampleID_, sampleID) != sampleID && sampleID > 0;
    samplesShown_ += isNew ? 1 : 0;
    display(isNew ? Sample::isNew : Sample::wasShown);
}

}  // namespace vantor
