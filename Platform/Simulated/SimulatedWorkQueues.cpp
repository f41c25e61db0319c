#include "Platform/Simulated/SimulatedWorkQueues.h"

#include <utility>

namespace vantor::simulated {
namespace {

class InlineSerialQueue final : public SerialQueue {
public:
    explicit InlineSerialQueue(std::string label) : label_(std::move(label)) {}

    void async(Task task) override { run(task); }
    void sync(Task task) override { run(task); }
    bool isCurrent() const noexcept override { return depth_ > 0; }
    std::string_view label() const noexcept override { return label_; }

private:
    struct Depth {
        explicit Depth(int& depth) noexcept : depth_(depth) { ++depth_; }
        ~Depth() { --depth_; }
        int& depth_;
    };

    void run(Task& task) {
        const Depth inside(depth_);
        task();
    }

    std::string label_;
    int depth_ = 0;
};

}  // namespace

std::unique_ptr<SerialQueue> SimulatedWorkQueues::makeSerialQueue(std::string label) {
    return std::make_unique<InlineSerialQueue>(std::move(label));
}

}  // namespace vantor::simulated
