#include "Platform/Simulated/SimulatedWorkQueues.h"

#include <utility>

namespace vantor::simulated {
namespace {

class InlineSerialQueue final : public SerialQueue {
public:
    /// `currentLabel` is kept up to date.
    InlineSerialQueue(std::string label, std::string_view& currentLabel)
        : label_(std::move(label)), currentLabel_(currentLabel) {}

    void async(Task task) override { run(task); }
    void sync(Task task) override { run(task); }
    bool isCurrent() const noexcept override { return depth_ > 0; }
    std::string_view label() const noexcept override { return label_; }

private:
    /// For as long as a task runs; tasks of several queues run inside each other.
    struct Inside {
        explicit Inside(InlineSerialQueue& queue) noexcept
            : queue_(queue), outerLabel_(std::exchange(queue.currentLabel_, queue.label_)) {
            ++queue_.depth_;
        }
        ~Inside() {
            --queue_.depth_;
            queue_.currentLabel_ = outerLabel_;
        }
        InlineSerialQueue& queue_;
        std::string_view outerLabel_;
    };

    void run(Task& task) {
        const Inside inside(*this);
        task();
    }

    std::string label_;
    std::string_view& currentLabel_;
    int depth_ = 0;
};

}  // namespace

std::unique_ptr<SerialQueue> SimulatedWorkQueues::makeSerialQueue(std::string label) {
    return std::make_unique<InlineSerialQueue>(std::move(label), label_);
}

}  // namespace vantor::simulated
