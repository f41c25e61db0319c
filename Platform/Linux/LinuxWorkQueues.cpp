#include "Platform/Linux/LinuxWorkQueues.h"

#include <utility>

namespace vantor {
namespace {

class LinuxSerialQueue final : public SerialQueue {
public:
    explicit LinuxSerialQueue(std::string label) : worker_(std::move(label)) {}
    void async(Task task) override { worker_.async(std::move(task)); }
    void sync(Task task) override { worker_.sync(std::move(task)); }
    bool isCurrent() const noexcept override { return worker_.isCurrent(); }
    std::string_view label() const noexcept override { return worker_.name(); }

private:
    Worker worker_;
};

}  // namespace

LinuxWorkQueues::LinuxWorkQueues(std::chrono::milliseconds globalIdle)
    : global_("vantor-global", globalIdle) {}

void LinuxWorkQueues::globalAsync(Task task) { global_.async(std::move(task)); }

std::unique_ptr<SerialQueue> LinuxWorkQueues::makeSerialQueue(std::string label) {
    return std::make_unique<LinuxSerialQueue>(std::move(label));
}

void LinuxWorkQueues::drainGlobal() { global_.drain(); }

}  // namespace vantor
