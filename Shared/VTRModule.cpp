#include "Shared/VTRModule.h"

#include <algorithm>

#include <fmt/format.h>

#include "Platform/Directories.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr int kAlwaysMeasuredSequence = -1;

}  // namespace

VTRModule::VTRModule(VTRModuleDelegate& extra) : menu_(createMenu()) {
    menu_->setDelegate(this);
    addDelegate(extra);
}

VTRModule::~VTRModule() = default;

void VTRModule::menubarThemeChanged() {
    if (view_)
        view_->resetTextConfig();
}

void VTRModule::addDelegate(VTRModuleDelegate& delegate) {
    if (std::ranges::find(delegates_, &delegate) == delegates_.end())
        delegates_.push_back(&delegate);
}

void VTRModule::removeDelegate(VTRModuleDelegate& delegate) noexcept {
    std::erase(delegates_, &delegate);
}

std::optional<std::filesystem::path> VTRModule::databasePath(std::string_view name,
                                                             const VTRModuleDelegate* extra) {
    auto directory = ProcessContext::current().ports().directories.applicationSupport();
    if (!directory)
        return std::nullopt;
    *directory /= "Vantor Bar/databases";
    std::error_code ignored;  // what can't be made shows when the file is opened
    std::filesystem::create_directories(*directory, ignored);
    const bool combined = extra != nullptr && extra->isCombinedExtra();
    return *directory / fmt::format("{}{}.db", combined ? "combined_" : "", name);
}

std::optional<std::filesystem::path> VTRModule::databasePath(std::string_view name) const {
    return databasePath(name, delegates_.empty() ? nullptr : delegates_.front());
}

std::optional<bool> VTRModule::collectorShouldUpdateStateForSequence(StatCollector&,
                                                                     int sequence) {
    if (sequence == kAlwaysMeasuredSequence)
        return true;
    switch (VTRIntegerForKey("TimerFrequency")) {
    case 2: return true;
    case 1: return sequence % 2 == 0;
    case 0: return sequence % 3 == 0;
    default: return false;
    }
}

}  // namespace vantor::inline VANTOR_MODULE
