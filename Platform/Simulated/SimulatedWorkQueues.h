#pragma once

#include "Platform/WorkQueues.h"

namespace vantor::simulated {

/// Background work that runs at once, in order, on the caller's thread.
class SimulatedWorkQueues final : public WorkQueues {
public:
    void globalAsync(Task task) override { task(); }
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) override;
    void drainGlobal() override {}
    std::string_view currentLabel() const noexcept override { return label_; }

private:
    std::string_view label_;
};

}  // namespace vantor::simulated
